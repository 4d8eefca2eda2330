#pragma once

#include <quorl/kit/ClassCreator.h>
#include <quorl/objects/VObject.h>

#include <concepts>

namespace Quorl
{

/// What an object needs to be made by a `VCreator`; `using VObject::VObject;` is enough.
template <class Object>
concept Creatable =
    std::derived_from<Object, VObject> &&
    std::constructible_from<Object, const string&, int, const RefPtr<VCreationPreferences>&>;

/// The creator of one class of objects:
///
///     VCreator<Hillshade> hillshade("Grid/Hillshade", {.accepts = {typeid(Field)},
///                                                      .provides = {typeid(Field)}});
///
/// It is found by its key, "category/name(variant)", and as long as it lives by the types that it
/// provides. It takes an object that has an output of an accepted type, once for each.
template <Creatable Object>
class VCreator : public ClassCreator
{
public:
    explicit VCreator(const string& key, const CreatorTraits& traits = {})
        : ClassCreator(key, traits)
    {
    }

private:
    RefPtr<VObject> make(const string& objectName, int objectPriority,
                         const RefPtr<VCreationPreferences>& wanted) const override
    {
        return RefPtr<VObject>(new Object(objectName, objectPriority, wanted));
    }
};

} // namespace Quorl
