#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/Rare.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/StringList.h>
#include <quorl/objects/VConnectionValidatorList.h> // a container is a list of validators
#include <quorl/registry/VManagedObjectBase.h>      // and a branch of a managed object
#include <quorl/slots/VOutputIterator.h>
#include <quorl/slots/VSlotIterator.h>
#include <quorl/slots/VSlotSet.h>
#include <quorl/values/ValueCacheable.h>

#include <functional>
#include <limits>
#include <list>
#include <memory>
#include <set>
#include <typeinfo>

namespace Quorl
{

/// All that has named inputs and registered outputs; `VObject` is the main kind.
///
/// Inputs stand in expert levels, and a name is unique within one. Outputs stand under types. The
/// container has one age for each context, and one connection age: when an input was last added,
/// removed or attached.
///
/// It must be held by a strong handle before anything is attached to it.
///
/// Threads: what searches and registers outputs takes their mutex; what only counts them or
/// compares their ages does not, nor does anything that concerns inputs. See `VSlotTables`.
class QUORL_API VSlotContainer : public virtual VManagedObjectBase,
                                 public VConnectionValidatorList,
                                 public ValueCacheable
{
public:
    class SetupFunctor;
    using SetupFunction = void (*)(VSlotContainer*, const VSlotSet&);

    enum AttachErrorCode : int
    {
        AttachOk = 0,
        AttachNotAllowed = 1,
        AttachToOutput = 2,
        AttachSourceNotFound = -1,
        AttachNullDestination = -2,
        AttachNullSource = -3,
        AttachDestinationNotFound = -4,
        AttachIncompatibleTypes = -5,
    };

    static constexpr int kAllLevels = std::numeric_limits<int>::max(); ///< of inputs
    static constexpr int kNoSuchSlot = 2000; ///< the expert level of what is not there

    VSlotContainer();
    VSlotContainer(const VSlotContainer&) = delete;
    VSlotContainer& operator=(const VSlotContainer&) = delete;
    ~VSlotContainer() override;

    static string AttachErrorCodeMessage(int code); ///< empty for an unknown one

    // What a kind of container may do otherwise; in the order of the table of virtual operations

    /// What an object does once its slots are connected, or some of them anew.
    virtual void setup(const VSlotSet& slots);

    /// Whether a parameter of this container may be replaced by one that is offered.
    virtual bool allowParameterReplacement(const RefPtr<VParameter>& source,
                                           const RefPtr<VParameter>& destination,
                                           const string& name, int expertLevel);

    /// Attaches what the propagating inputs show to the inputs of `other` with the same name and
    /// type. Prints a reminder on standard output.
    /// \return the number of attachments, objections included; 0 for a dead `other`.
    virtual int connectSlots(const RefPtr<VSlotContainer>& other);

    /// Whether requests pass over an input; by default over names that begin with "qZelm::".
    virtual bool ignoreInput(const RefPtr<VSlot>& slot) const;

    virtual bool implements(const std::type_info& type) const; ///< whether an output has the type

    /// The output of that type with that name and member; for an empty name the first of the type.
    virtual RefPtr<VParameter> getImplementation(const std::type_info& type, const string& name,
                                                 const string& member) const;

    /// Visits the outputs of a type, all for `void`. Runs under the lock of the outputs.
    /// \return the number of visits, the one that answered false included.
    virtual int iterateOutputs(VOutputIterator& visitor, const std::type_info& type) const;

    // Setting up

    void addSetupFunction(SetupFunction function);
    void addSetupFunctor(const Tolmen::WeakPtrImpl<SetupFunctor, SetupFunctor>& functor);

    /// Calls `setup`, the functions in the order of their addresses, and the live functors in the
    /// order of their handles. Any of them may enter others, and end the container.
    void initialize(const VSlotSet& slots);
    void initialize();
    void initialize(const WeakPtr<VSlot>& slot);

    // Inputs

    /// Enters an input. Whether it is taken or refused, the connection age moves.
    /// \param replace whether a slot of the same name in the same level goes first.
    /// \return the slot; null for a null slot, for which no age moves, and if the name is taken.
    RefPtr<VSlot> addSlot(const RefPtr<VSlot>& slot, int expertLevel, bool replace);

    /// Makes an input for a parameter and enters it. \return null for a null parameter.
    RefPtr<VSlot> addParameter(const string& name, int expertLevel,
                               const RefPtr<VParameter>& parameter, bool replace);

    /// Removes the first input of that name, by ascending level. \return whether there was one.
    bool removeParameter(const string& name);

    /// The first live input of that name, by ascending level.
    /// \param expertLevel receives the level; left alone if there is none.
    RefPtr<VSlot> getSlot(const string& name, int& expertLevel) const;
    RefPtr<VParameter> getParameter(const string& name) const;

    /// The first input that shows the parameter; for null, the first empty one.
    RefPtr<VSlot> findSlot(const RefPtr<VParameter>& parameter) const;
    string getSlotName(const RefPtr<VParameter>& parameter) const; ///< empty if there is none

    int getNumberOfInputs() const;
    int getNumberOfParameters(int maxExpertLevel) const; ///< up to and including that level

    /// Visits the live inputs up to a level, by level, then by name. The visitor must not add or
    /// remove inputs at the level that it is in.
    /// \return the number of levels that were finished.
    int iterateParameters(int maxExpertLevel, VSlotIterator& visitor) const;

    /// Visits all inputs, until a visit answers false. Inputs may come and go meanwhile.
    /// \return the number of visits that answered true.
    /// \throws std::bad_function_call for an empty function, at the first input.
    int iterate_inputs(std::function<bool(const RefPtr<VSlot>&, int)> visit) const;
    int iterate_inputs(std::function<bool(VSlot&, int)> visit) const;

    /// \return the level of the first match; `kNoSuchSlot` if there is none.
    int getExpertLevel(const RefPtr<VSlot>& slot) const;
    int getExpertLevel(const RefPtr<VParameter>& parameter) const;
    int getExpertLevel(const string& name) const; ///< Deliberate: 0, always.

    /// Moves the first match to a level, unless its name is taken there.
    /// \return the level where it stands now; `kNoSuchSlot` if there is no match.
    int setExpertLevel(const RefPtr<VSlot>& slot, int level);
    int setExpertLevel(const RefPtr<VParameter>& parameter, int level);

    /// Deliberate: not implemented by name, and says so on standard output. \return 0
    int setExpertLevel(const string& name, int level);

    /// The one input of a type; null if there are several.
    RefPtr<VSlot> getUniqueInputSlot(const std::type_info& type);

    /// Gives an input a parameter of its own: a copy of the one that it shows, called `prefix`, a
    /// point, and the slot's name.
    /// \return the copy; null if nothing shows the parameter, which is said on standard output.
    RefPtr<VParameter> mkUniqueParameterInput(const RefPtr<VParameter>& parameter,
                                              const string& prefix);
    RefPtr<VParameter> mkUniqueParameterInput(const string& name, const string& prefix);

    // Outputs

    /// Offers a parameter as an output under its type, and becomes its source. An empty name means
    /// the parameter's full name.
    /// \return false for a null parameter, and for one with another live source, which is said on
    /// standard output.
    bool registerOutput(const RefPtr<VParameter>& parameter, const string& name);

    /// The same for a slot that exists, and under a type of choice; another source is refused
    /// silently.
    bool registerOutput(const RefPtr<VSlot>& slot);
    bool registerOutput(const RefPtr<VParameter>& parameter, const string& name,
                        const std::type_info& type, const string& member);
    bool registerOutput(const RefPtr<VParameter>& parameter, const std::type_info& type,
                        const string& member);

    RefPtr<VSlot> getOutput(const string& name) const; ///< the first of that name; or null
    RefPtr<VSlot> findOutputSlot(const RefPtr<VParameter>& parameter) const;
    int getNumberOfOutputs() const;
    RefPtr<Tolmen::StringList> getOutputs(const std::type_info& type) const; ///< their names

    bool provides(const RefPtr<VSlot>& slot) const; ///< whether one fits what the slot wants

    /// The slot of `getImplementation`.
    RefPtr<VSlot> getImplementationSlot(const std::type_info& type, const string& name,
                                        const string& member) const;

    /// What a child can take from here: a record for each output of the type.
    std::list<RefPtr<VAcceptInfo>> getAcceptInfoList(const std::type_info& type) const;

    // Ages

    /// The container's age in a context, `Ooooold` in one where it never ran; without a live pool
    /// an age of its own.
    const Ageable& age(const RefPtr<ValuePool>& pool) const;
    Ageable& age(const RefPtr<ValuePool>& pool);

    const Ageable& ConnectionAge() const;
    void touchInputSetAge() const;

    /// The youngest of the inputs and of the objects that provide them, ignored inputs included;
    /// the age 0 without any.
    Ageable YoungestInput(const RefPtr<ValuePool>& pool) const;
    Ageable YoungestUncachedInput(const RefPtr<ValuePool>& pool) const; ///< not of `Cached` slots
    Ageable YoungestOutput(const RefPtr<ValuePool>& pool) const;

    bool HasYoungerInput(const RefPtr<ValuePool>& pool, int expertLevel) const; ///< of any level
    bool isNewlyConnected(const RefPtr<VParameter>& output, const RefPtr<ValuePool>& pool) const;
    bool isYounger(const RefPtr<VParameter>& output, const RefPtr<ValuePool>& pool) const;

    /// Enters the outputs that were connected since the container last ran in the context.
    void findNewlyConnectedOutputs(const RefPtr<ValuePool>& pool, VSlotSet& result) const;
    bool hasNewlyConnectedOutputs(const RefPtr<ValuePool>& pool) const;

    /// Whether an input is newer than the container; false if there is none.
    bool hasChanged(const RefPtr<VSlot>& slot, const RefPtr<ValuePool>& pool) const;
    bool hasChanged(const string& name, const RefPtr<ValuePool>& pool) const;

    /// Whether any of `count` inputs, given by their names (`const char*`), is newer.
    bool hasChanged(const RefPtr<ValuePool>& pool, int count, ...) const;

    /// The same for a list of names that `nullptr` ends.
    bool hasChanged(RefPtr<ValuePool> pool, ...) const;

    /// Whether any slot differs by its datum from what the `ValueCache` of a cube remembers.
    bool hasChangedSlots(const Tolmen::Intercube& context, const RefPtr<ValuePool>& pool) const;

    // Attaching

    /// Puts a parameter into a slot, unless an observer of the action channel objects.
    ///
    /// A change stamps the slot, the parameter's output slot and the owner's connection age, taints
    /// the owner's validators, and is told to the observers. What is attached already stays, and
    /// nothing moves.
    /// \return false for a dead slot, and for an objection.
    static bool attachParameter(const RefPtr<VParameter>& parameter, const WeakPtr<VSlot>& slot,
                                const string& member);

    /// Puts `source`, or its member, into the first input that shows `destination`.
    /// \return `AttachOk` also if an observer objected.
    AttachErrorCode attach(const RefPtr<VParameter>& destination, const RefPtr<VParameter>& source,
                           const string& member);

    /// The first input, by level, then by name, whose parameter may be replaced by `parameter`: of
    /// its type, without a constraint against it, and allowed by `allowParameterReplacement`.
    /// Whether it is connected does not matter.
    /// \return null if there is none, and for a null parameter.
    RefPtr<VSlot> findReplaceableSlot(const RefPtr<VParameter>& parameter);

    const std::unique_ptr<VSlotTables> Slots; ///< never null
    Ageable LocalAge;
    Tolmen::Rare<std::set<SetupFunction, std::less<SetupFunction>>> SetupFunctions;
    Tolmen::Rare<std::set<Tolmen::WeakPtrImpl<SetupFunctor, SetupFunctor>>>
        SetupFunctors; ///< the dead stay

protected:
    /// Keeps the container while code of others runs that may drop it. Null if nobody owns it.
    RefPtr<VSlotContainer> heldForVisits() const;

private:
    RefPtr<VSlot> registerOutputSlot(const RefPtr<VParameter>& parameter, const string& name,
                                     const std::type_info& type, const string& member);
    bool hasOtherSource(const VParameter& parameter) const;
    Ageable youngestInput(const RefPtr<ValuePool>& pool, bool includesCached) const;
};

/// Something that takes part in the set-up of containers without being derived from them.
class QUORL_API VSlotContainer::SetupFunctor
    : public Tolmen::ReferenceBase<VSlotContainer::SetupFunctor>
{
public:
    ~SetupFunctor() override;
    virtual void apply(VSlotContainer* container, const VSlotSet& slots) = 0;
};

/// As `VSlotContainer::addSlot`; null for a null container or slot.
QUORL_API RefPtr<VSlot> addSlot(VSlotContainer* container, const RefPtr<VSlot>& slot,
                                int expertLevel, bool replace);

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VSlotContainer::SetupFunctor>;
} // namespace Tolmen
