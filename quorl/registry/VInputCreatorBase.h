#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/registry/VManagedDomainObject.h>

#include <typeinfo>

namespace Quorl
{

/// A factory that can supply a value of one type, or several, for an input. All creators stand in
/// its domain.
///
/// To be found by name it has to be constructed; to be found by a type, to be registered for it
/// (`registerVInput`), which `VInputCreator` does.
class QUORL_API VInputCreatorBase : public VManagedDomainObject<VInputCreatorBase>
{
public:
    /// Enters the creator in its domain, which may change its name to a free one.
    /// \param text what the creator tells of its module; kept, not copied. May be null.
    VInputCreatorBase(const string& name, int priority,
                      const RefPtr<VCreationPreferences>& preferences, const char* text);
    ~VInputCreatorBase() override;

    RefPtr<VCreationPreferences> preferences; ///< what it offers; may be null
    int priority = 0;                         ///< as given; the registry keeps its own
    const char* text = nullptr;               ///< not owned
};

extern template class VManagedDomainObject<VInputCreatorBase>;

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

/// Reads which creators of modules that are not loaded provide which types, and says each on
/// standard output. To be done before modules are loaded.
///
/// The file, little-endian, strings as `Tolmen::fputstring` writes them:
///
/// | item                                | size   |
/// |-------------------------------------|--------|
/// | "ZelmInputCreatorCache\n" and a 0   | 23     |
/// | number of groups                    | 8      |
/// | for each group: number of entries   | 8      |
/// | for each entry: type name, provider | string |
/// | a number that is printed only       | 4      |
/// | number of properties                | 8      |
/// | for each property: word             | string |
/// | and weight                          | 8      |
///
/// \return false if the file cannot be opened, begins otherwise or ends early; the entries read up
/// to there stay.
QUORL_API bool LoadInputCreatorCache(const string& path);

/// Deliberate: writes nothing. The file is supplied from outside of the kernel. \return true.
QUORL_API bool CreateInputCreatorCache(const string& path);

} // namespace Quorl
