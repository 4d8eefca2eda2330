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

class QUORL_API CancellableRequest;
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

template <class T>
    requires OneOf<T, Quorl::ApplicationQuitter, Quorl::DownloadHandler, Quorl::Task,
                   Quorl::TypedSlotCreator, Quorl::VAcceptInfo, Quorl::VAcceptList,
                   Quorl::VActionNotifier, Quorl::ValueNotifier, Quorl::ValueNotifierList,
                   Quorl::ValuePool, Quorl::ValuePoolCreator, Quorl::ValuePoolProvider,
                   Quorl::ValueSet, Quorl::VConnectionValidator, Quorl::VCreatorBaseInfo,
                   Quorl::VCreatorMap, Quorl::VLogger, Quorl::VManagedObjectBase, Quorl::VModule,
                   Quorl::VParameterConnectionConstraint, Quorl::VScriptFunctor,
                   Quorl::VScriptParameters, Quorl::VScriptTypedValue, Quorl::VScriptValue,
                   Quorl::VSlot, Quorl::VTaskMessage, Quorl::VUndoAction, Quorl::VValueBase,
                   Quorl::VValueCreator, Quorl::ZelmSaver>
struct HandleRoot<T> : IsHandleRoot<T>
{
};
template <class T>
    requires OneOf<T, Quorl::VManagedObject, Quorl::VInputCreatorBase, Quorl::VCreatorBase,
                   Quorl::VThreadCreator, Quorl::VLoader, Quorl::VSlotContainer,
                   Quorl::VConnectable, Quorl::VSkale, Quorl::VObject>
struct HandleRoot<T> : IsHandleRoot<Quorl::VManagedObjectBase>
{
};
template <>
inline constexpr bool kStandsInNetworks<Quorl::VManagedObjectBase> = true;
template <>
struct HandleRoot<Quorl::VParameter> : IsHandleRoot<Quorl::ValueNotifierList>
{
};
template <class T>
    requires OneOf<T, Quorl::ValueActionBase, Quorl::VInputBase, Quorl::VTask>
struct HandleRoot<T> : IsHandleRoot<Quorl::ValueNotifier>
{
};
template <class T>
    requires OneOf<T, Quorl::VUndoStack, Quorl::ValueCache, Quorl::VLoaderInfo, Quorl::VModuleHold,
                   Quorl::VObjectUserInfo, Quorl::VCreationPreferences,
                   Quorl::VParameterObjectCreator>
struct HandleRoot<T> : IsHandleRoot<InterfaceBase>
{
};
template <>
struct HandleRoot<Quorl::VDataFlowGraph> : IsHandleRoot<Quorl::VConnectionValidator>
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
