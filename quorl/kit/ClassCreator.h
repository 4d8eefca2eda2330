#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/TypeInfo.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/registry/VCreatorBase.h>

#include <vector>

namespace Quorl
{

/// What a creator says of itself and of the objects that it makes. Every field may be left out.
struct CreatorTraits
{
    std::vector<Tolmen::TypeInfo> accepts{};  ///< types of outputs that the objects take as inputs
    std::vector<Tolmen::TypeInfo> provides{}; ///< types of their outputs
    string summary{};                         ///< one line for people
    string description{};                     ///< as long as it takes
    string author{};
    string applications{}; ///< separated by semicolons
    int priority = 0;
    RefPtr<VCreationPreferences> preferences{};

    /// Of a creator that is a static object, as those of modules are. One that is made with `new`
    /// is not pinned, or it stays for ever.
    bool isPinned = true;
    const char* text = nullptr; ///< such as the directory of its source; not owned
};

/// What all creators of a class have in common, whatever the class; see `VCreator`.
class QUORL_API ClassCreator : public VCreatorBase
{
public:
    ~ClassCreator() override;

    /// Makes an object that is ready for requests, and tells the subscribers of the action channel.
    /// The module that the creator comes from stays loaded for as long as the object lives.
    /// \param name if empty, the identifier.
    RefPtr<VObject> create(const string& name, const Tolmen::Intercube& context) override;

    /// A record for each output of `parent` of each accepted type.
    VAcceptInfoList accept(const RefPtr<VObject>& parent) override;

protected:
    ClassCreator(const string& key, const CreatorTraits& traits);

private:
    virtual RefPtr<VObject> make(const string& objectName, int objectPriority,
                                 const RefPtr<VCreationPreferences>& wanted) const = 0;

    RefPtr<VModuleHold> moduleHold() const;
    void complete(const RefPtr<VObject>& object, const RefPtr<VModuleHold>& hold,
                  const Tolmen::Intercube& context);

    const WeakPtr<VModule> module_; // where its code is, if it was made while that was loaded
    const std::vector<Tolmen::TypeInfo> accepts_;
    const std::vector<Tolmen::TypeInfo> provides_;
};

} // namespace Quorl
