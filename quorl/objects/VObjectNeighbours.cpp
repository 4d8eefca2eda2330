#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

/// The walks to the objects around one, and through the registry.
namespace Quorl
{
namespace
{

/// Shows the outputs of one type of each object that it comes by.
class ShowOutputs final : public VManagedObjectIterator, public VOutputIterator
{
public:
    ShowOutputs(const std::type_info& type, VObject::OutputObjectIterator& visitor)
        : type_(type), visitor_(visitor)
    {
    }

    bool apply(int /*priority*/, const RefPtr<VManagedObject>& item,
               const string& /*name*/) override
    {
        object_ = item;
        if (object_) object_->iterateOutputs(*this, type_);
        return goesOn_;
    }

    bool apply(const std::type_info& type, const RefPtr<VSlot>& slot) override
    {
        ++shown;
        goesOn_ = visitor_.apply(object_, type, slot);
        return goesOn_;
    }

    int shown = 0;

private:
    const std::type_info& type_;
    VObject::OutputObjectIterator& visitor_;
    RefPtr<VObject> object_; // whose outputs are shown
    bool goesOn_ = true;
};

/// Keeps the first output that it is shown.
struct FirstOutput final : VObject::OutputObjectIterator
{
    bool apply(const RefPtr<VObject>& /*object*/, const std::type_info& /*type*/,
               const RefPtr<VSlot>& slot) override
    {
        if (isFirst) parameter = slot->Parameter;
        isFirst = false;
        return true;
    }

    RefPtr<VParameter> parameter;
    bool isFirst = true;
};

class ShowParents final : public VSlotIterator
{
public:
    ShowParents(VObjectIterator& visitor, int maxExpertLevel)
        : visitor_(visitor), maxExpertLevel_(maxExpertLevel)
    {
    }

    bool apply(const RefPtr<VSlot>& slot, int expertLevel) override
    {
        if (expertLevel > maxExpertLevel_ || !slot->Parameter) return true;
        const RefPtr<VObject> parent = slot->Parameter->source;
        return !parent || visitor_.apply(parent, slot->getType(), slot);
    }

private:
    VObjectIterator& visitor_;
    const int maxExpertLevel_;
};

/// For each output, goes through the registry for inputs that show it.
class ShowChildren final : public VOutputIterator, public VManagedObjectIterator
{
public:
    ShowChildren(const VObject& parent, VObject::OutputObjectIterator& visitor)
        : parent_(&parent), visitor_(visitor)
    {
    }

    bool apply(const std::type_info& type, const RefPtr<VSlot>& slot) override
    {
        type_ = &type;
        output_ = slot->Parameter;
        if (output_) VManagedObject::traverse(typeid(VObject), *this);
        return goesOn_;
    }

    bool apply(int /*priority*/, const RefPtr<VManagedObject>& item,
               const string& /*name*/) override
    {
        const RefPtr<VObject> child = item;
        if (!child || child == parent_) return true;
        const RefPtr<VSlot> input = child->findSlot(output_);
        goesOn_ = !input || visitor_.apply(child, *type_, input);
        return goesOn_;
    }

private:
    const WeakVObjectPtr parent_;
    VObject::OutputObjectIterator& visitor_;
    const std::type_info* type_ = nullptr; // of the output whose takers are searched
    RefPtr<VParameter> output_;
    bool goesOn_ = true;
};

} // namespace

int VObject::findOutputObjects(const std::type_info& type, OutputObjectIterator& visitor)
{
    ShowOutputs walk(type, visitor);
    VManagedObject::traverse(typeid(VObject), walk);
    return walk.shown;
}

RefPtr<VParameter>
VObject::findUniqueOutputObject(const std::type_info& type,
                                const RefPtr<VCreationPreferences>& /*preferences*/, bool unique)
{
    FirstOutput first;
    const int candidates = findOutputObjects(type, first);
    return candidates == 1 || !unique ? first.parameter : RefPtr<VParameter>();
}

void VObject::iterateParents(VObjectIterator& visitor, int maxExpertLevel) const
{
    ShowParents walk(visitor, maxExpertLevel);
    iterateParameters(kAllLevels, walk);
}

int VObject::iterateChildren(OutputObjectIterator& visitor) const
{
    const RefPtr<VObject> held =
        Tolmen::heldIfOwned(WeakVObjectPtr(this)); // the visitor may drop it
    ShowChildren walk(*this, visitor);
    return iterateOutputs(walk, typeid(void));
}

} // namespace Quorl
