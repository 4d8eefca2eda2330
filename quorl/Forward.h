#pragma once

#include <quorl/foundation/Forward.h>

#include <string>

/// Declarations of the kernel, and the root of the handles of each of its classes: with this header
/// alone, `RefPtr<VObject>` can be named, copied and dropped.
namespace Quorl
{

using std::string;
using Tolmen::Ageable;
using Tolmen::RefPtr;
using Tolmen::WeakPtr;

class ApplicationQuitter;
class DownloadHandler;
struct lessValueSetPtr;
class NotifiedValueIterator;
struct Task;
class TypedSlotCreator;
class VAcceptInfo;
class VAcception;
class VAcceptList;
class VActionNotifier;
class ValueActionBase;
class ValueCache;
class ValueMap;
class ValueNotifier;
class ValueNotifierList;
class ValuePool;
class ValuePoolCreator;
class ValuePoolProvider;
class ValueSet;
class ValueShadowIterator;
class VConnectable;
class VConnectionValidator;
class VConnectionValidatorList;
class VContext;
class VCreationPreferences;
class VCreatorBase;
class VCreatorBaseInfo;
class VCreatorCategory;
class VCreatorMap;
class VCreatorProperties;
class VDataFlowGraph;
class VGlobals;
class VGraph;
class VInputBase;
class VInputClass;
class VInputClassRecognition;
class VInputCreatorBase;
class VLoader;
class VLoaderInfo;
class VLogger;
class VManagedObject;
class VManagedObjectBase;
class VManagedObjectIterator;
class VModule;
class VObject;
class VObjectAge;
class VObjectException;
class VObjectIterator;
class VObjectUserInfo;
class VOutputIterator;
class VParameter;
class VParameterConnectionConstraint;
class VParameterObjectCreator;
class VRequest;
class VSaveable;
class VScheduler;
class VScriptable;
class VScriptFunctor;
class VScriptParameters;
class VScriptTypedValue;
class VScriptValue;
class VSkale;
class VSlot;
class VSlotContainer;
class VSlotIterator;
class VSlotSet;
class VStateCreatorBase;
class VTask;
class VTaskMessage;
class VThreadCreator;
class VThreadManager;
class VTraceRequestID;
class VUndoAction;
class VUndoStack;
class VValueBase;
class VValueCreator;
class ZelmSaver;

template <class T>
class VManagedDomainObject;
template <class T, class Base>
class VInputCreator;
template <class T>
class TypedValueCreator;
template <class T>
class VTypedValueBase;
template <class T>
class VValue;
template <class T>
class VValueParameter;
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
