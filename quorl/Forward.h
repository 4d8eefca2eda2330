#pragma once

#include <quorl/Export.h>
#include <quorl/foundation/Forward.h>

#include <string>

/// Declarations of the kernel, and the root of the handles of each of its classes: with this header
/// alone, `RefPtr<VObject>` can be named, copied and dropped. They are exported here already, or
/// what templates make of a class that is only declared would be hidden.
namespace Quorl
{

using std::string;
using Tolmen::Ageable;
using Tolmen::RefPtr;
using Tolmen::WeakPtr;

class QUORL_API ApplicationQuitter;
class QUORL_API DownloadHandler;
struct QUORL_API lessValueSetPtr;
class QUORL_API NotifiedValueIterator;
struct QUORL_API Task;
class QUORL_API TypedSlotCreator;
class QUORL_API VAcceptInfo;
class QUORL_API VAcception;
class QUORL_API VAcceptList;
class QUORL_API VActionNotifier;
class QUORL_API ValueActionBase;
class QUORL_API ValueCache;
class QUORL_API ValueMap;
class QUORL_API ValueNotifier;
class QUORL_API ValueNotifierList;
class QUORL_API ValuePool;
class QUORL_API ValuePoolCreator;
class QUORL_API ValuePoolProvider;
class QUORL_API ValueSet;
class QUORL_API ValueShadowIterator;
class QUORL_API VConnectable;
class QUORL_API VConnectionValidator;
class QUORL_API VConnectionValidatorList;
class QUORL_API VContext;
class QUORL_API VCreationPreferences;
class QUORL_API VCreatorBase;
class QUORL_API VCreatorBaseInfo;
class QUORL_API VCreatorCategory;
class QUORL_API VCreatorMap;
class QUORL_API VCreatorProperties;
class QUORL_API VDataFlowGraph;
class QUORL_API VGlobals;
class QUORL_API VGraph;
class QUORL_API VInputBase;
class VInputClass;
class QUORL_API VInputClassRecognition;
class QUORL_API VInputCreatorBase;
class QUORL_API VLoader;
class QUORL_API VLoaderInfo;
class QUORL_API VLogger;
class QUORL_API VManagedObject;
class QUORL_API VManagedObjectBase;
class QUORL_API VManagedObjectIterator;
class QUORL_API VModule;
class QUORL_API VModuleHold;
class QUORL_API VObject;
class QUORL_API VObjectAge;
class QUORL_API VObjectException;
class QUORL_API VObjectIterator;
class QUORL_API VObjectUserInfo;
class QUORL_API VOutputIterator;
class QUORL_API VParameter;
class QUORL_API VParameterConnectionConstraint;
class QUORL_API VParameterObjectCreator;
class QUORL_API VRequest;
class QUORL_API VSaveable;
class QUORL_API VScheduler;
class QUORL_API VScriptable;
class QUORL_API VScriptFunctor;
class QUORL_API VScriptParameters;
class QUORL_API VScriptTypedValue;
class QUORL_API VScriptValue;
class QUORL_API VSkale;
class QUORL_API VSlot;
class QUORL_API VSlotContainer;
class QUORL_API VSlotIterator;
class QUORL_API VSlotSet;
struct QUORL_API VSlotTables;
class QUORL_API VStateCreatorBase;
class QUORL_API VTask;
class QUORL_API VTaskMessage;
class QUORL_API VThreadCreator;
class QUORL_API VThreadManager;
class QUORL_API VTraceRequestID;
class QUORL_API VUndoAction;
class QUORL_API VUndoStack;
class QUORL_API VValueBase;
class QUORL_API VValueCreator;
class QUORL_API ZelmSaver;

template <class T>
class QUORL_TEMPLATE_API VManagedDomainObject;
template <class T, class Base>
class QUORL_TEMPLATE_API VInputCreator;
template <class T>
class QUORL_TEMPLATE_API TypedValueCreator;
template <class T>
class QUORL_TEMPLATE_API VTypedValueBase;
template <class T>
class QUORL_TEMPLATE_API VValue;
template <class T>
class QUORL_TEMPLATE_API VValueParameter;
template <class T>
struct VValueTrait;

} // namespace Quorl

namespace Tolmen
{

template <>
struct HandleRoot<Quorl::VManagedObjectBase> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VManagedObject> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VInputCreatorBase> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VCreatorBase> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VThreadCreator> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VLoader> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VSlotContainer> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VConnectable> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VSkale> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::VObject> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
struct HandleRoot<Quorl::ValueNotifierList> : IsHandleRoot<Quorl::ValueNotifierList>
{
};
template <>
struct HandleRoot<Quorl::VParameter> : IsHandleRoot<Quorl::ValueNotifierList>
{
};
template <>
struct HandleRoot<Quorl::ValueNotifier> : IsHandleRoot<Quorl::ValueNotifier>
{
};
template <>
struct HandleRoot<Quorl::ValueActionBase> : IsHandleRoot<Quorl::ValueNotifier>
{
};
template <>
struct HandleRoot<Quorl::VInputBase> : IsHandleRoot<Quorl::ValueNotifier>
{
};
template <>
struct HandleRoot<Quorl::VTask> : IsHandleRoot<Quorl::ValueNotifier>
{
};
template <>
struct HandleRoot<Quorl::VValueBase> : IsHandleRoot<Quorl::VValueBase>
{
};
template <>
struct HandleRoot<Quorl::VUndoStack> : IsHandleRoot<Tolmen::InterfaceBase>
{
};
template <>
struct HandleRoot<Quorl::ValueCache> : IsHandleRoot<Tolmen::InterfaceBase>
{
};
template <>
struct HandleRoot<Quorl::VLoaderInfo> : IsHandleRoot<Tolmen::InterfaceBase>
{
};
template <>
struct HandleRoot<Quorl::VModuleHold> : IsHandleRoot<Tolmen::InterfaceBase>
{
};
template <>
struct HandleRoot<Quorl::VObjectUserInfo> : IsHandleRoot<Tolmen::InterfaceBase>
{
};
template <>
struct HandleRoot<Quorl::VCreationPreferences> : IsHandleRoot<Tolmen::InterfaceBase>
{
};
template <>
struct HandleRoot<Quorl::VParameterObjectCreator> : IsHandleRoot<Tolmen::InterfaceBase>
{
};
template <>
struct HandleRoot<Quorl::VUndoAction> : IsHandleRoot<Quorl::VUndoAction>
{
};
template <>
struct HandleRoot<Quorl::VConnectionValidator> : IsHandleRoot<Quorl::VConnectionValidator>
{
};
template <>
struct HandleRoot<Quorl::VDataFlowGraph> : IsHandleRoot<Quorl::VConnectionValidator>
{
};
template <>
struct HandleRoot<Quorl::VValueCreator> : IsHandleRoot<Quorl::VValueCreator>
{
};
template <>
struct HandleRoot<Quorl::VScriptFunctor> : IsHandleRoot<Quorl::VScriptFunctor>
{
};
template <>
struct HandleRoot<Quorl::ApplicationQuitter> : IsHandleRoot<Quorl::ApplicationQuitter>
{
};
template <>
struct HandleRoot<Quorl::DownloadHandler> : IsHandleRoot<Quorl::DownloadHandler>
{
};
template <>
struct HandleRoot<Quorl::Task> : IsHandleRoot<Quorl::Task>
{
};
template <>
struct HandleRoot<Quorl::TypedSlotCreator> : IsHandleRoot<Quorl::TypedSlotCreator>
{
};
template <>
struct HandleRoot<Quorl::VAcceptInfo> : IsHandleRoot<Quorl::VAcceptInfo>
{
};
template <>
struct HandleRoot<Quorl::VAcceptList> : IsHandleRoot<Quorl::VAcceptList>
{
};
template <>
struct HandleRoot<Quorl::VActionNotifier> : IsHandleRoot<Quorl::VActionNotifier>
{
};
template <>
struct HandleRoot<Quorl::VCreatorBaseInfo> : IsHandleRoot<Quorl::VCreatorBaseInfo>
{
};
template <>
struct HandleRoot<Quorl::VCreatorMap> : IsHandleRoot<Quorl::VCreatorMap>
{
};
template <>
struct HandleRoot<Quorl::VLogger> : IsHandleRoot<Quorl::VLogger>
{
};
template <>
struct HandleRoot<Quorl::VModule> : IsHandleRoot<Quorl::VModule>
{
};
template <>
struct HandleRoot<Quorl::VParameterConnectionConstraint>
    : IsHandleRoot<Quorl::VParameterConnectionConstraint>
{
};
template <>
struct HandleRoot<Quorl::VScriptParameters> : IsHandleRoot<Quorl::VScriptParameters>
{
};
template <>
struct HandleRoot<Quorl::VScriptTypedValue> : IsHandleRoot<Quorl::VScriptTypedValue>
{
};
template <>
struct HandleRoot<Quorl::VScriptValue> : IsHandleRoot<Quorl::VScriptValue>
{
};
template <>
struct HandleRoot<Quorl::VSlot> : IsHandleRoot<Quorl::VSlot>
{
};
template <>
struct HandleRoot<Quorl::VTaskMessage> : IsHandleRoot<Quorl::VTaskMessage>
{
};
template <>
struct HandleRoot<Quorl::ValuePool> : IsHandleRoot<Quorl::ValuePool>
{
};
template <>
struct HandleRoot<Quorl::ValuePoolCreator> : IsHandleRoot<Quorl::ValuePoolCreator>
{
};
template <>
struct HandleRoot<Quorl::ValuePoolProvider> : IsHandleRoot<Quorl::ValuePoolProvider>
{
};
template <>
struct HandleRoot<Quorl::ValueSet> : IsHandleRoot<Quorl::ValueSet>
{
};
template <>
struct HandleRoot<Quorl::ZelmSaver> : IsHandleRoot<Quorl::ZelmSaver>
{
};
template <class T>
struct HandleRoot<Quorl::TypedValueCreator<T>> : IsHandleRoot<Quorl::VValueCreator>
{
};
template <class T>
struct HandleRoot<Quorl::VManagedDomainObject<T>> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <class T, class Base>
struct HandleRoot<Quorl::VInputCreator<T, Base>> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <class T>
struct HandleRoot<Quorl::VTypedValueBase<T>> : IsHandleRoot<Quorl::VValueBase>
{
};
template <class T>
struct HandleRoot<Quorl::VValue<T>> : IsHandleRoot<Quorl::VValueBase>
{
};
template <class T>
struct HandleRoot<Quorl::VValueParameter<T>> : IsHandleRoot<Quorl::ValueNotifierList>
{
};

} // namespace Tolmen

namespace Quorl
{

using WeakVObjectPtr = WeakPtr<VObject>;

} // namespace Quorl
