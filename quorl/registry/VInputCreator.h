#pragma once

#include <quorl/Export.h>
#include <quorl/registry/VInputCreatorBase.h>

#include <typeinfo>
#include <utility>

namespace Quorl
{

/// Visits input creators; true goes on.
class QUORL_API VInputCreatorIterator
{
public:
    virtual ~VInputCreatorIterator();
    virtual bool apply(const WeakPtr<VInputCreatorBase>& creator) = 0;
};

/// Enters a creator as a provider of a type, weakly, behind those that are there. Twice makes two
/// entries.
/// \return false for a dead handle, which is told to the subscribers of the action channel and
/// said on standard output.
QUORL_API bool registerVInput(const std::type_info& type,
                              const WeakPtr<VInputCreatorBase>& creator);

/// Removes the first entry of a creator. \return whether there was one.
QUORL_API bool unregisterVInput(const std::type_info& type,
                                const WeakPtr<VInputCreatorBase>& creator);

/// Visits the live providers of a type in the order of registration, then loads those that only
/// the cache knows, which is said on standard output, and visits them. These are not known from the
/// cache alone any more then; one that cannot be found stays there.
/// \return false if the visitor stopped the walk.
QUORL_API bool iterateVInputCreators(const std::type_info& type, VInputCreatorIterator& visitor);

/// The provider that scores best, and above 0, against what is asked for; of equal ones the first,
/// and a loaded one before one that only the cache knows. Scores are those of
/// `VCreationPreferences::weight`, and 1 where either side has no preferences.
///
/// A module is loaded only if one of its creators wins. If it does not supply that, this is said on
/// standard output, and the best of the loaded ones is the answer.
/// \return an empty handle if there is none.
QUORL_API WeakPtr<VInputCreatorBase>
findBestVInputCreator(const std::type_info& type, const RefPtr<VCreationPreferences>& preferences);

/// Binds a creator to the type of the values that it provides: it is registered for the type as
/// long as it lives.
template <class T, class Base>
class QUORL_TEMPLATE_API VInputCreator : public Base
{
public:
    /// Apart from what any base takes, so that braced preferences are understood.
    VInputCreator(const string& givenName, int givenPriority,
                  const RefPtr<VCreationPreferences>& givenPreferences, const char* givenText)
        : Base(givenName, givenPriority, givenPreferences, givenText)
    {
        registerVInput(typeid(T), WeakPtr<VInputCreatorBase>(this));
    }

    /// Takes what a constructor of another `Base` takes.
    template <class... Arguments>
    explicit VInputCreator(Arguments&&... arguments) : Base(std::forward<Arguments>(arguments)...)
    {
        registerVInput(typeid(T), WeakPtr<VInputCreatorBase>(this));
    }

    ~VInputCreator() override { unregisterVInput(typeid(T), WeakPtr<VInputCreatorBase>(this)); }
};

} // namespace Quorl
