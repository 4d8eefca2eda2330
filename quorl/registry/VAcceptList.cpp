#include <quorl/registry/VAcceptList.h>

#include <quorl/foundation/LastKnownSourceCodeLine.h>
#include <quorl/objects/VObject.h> // the object in question
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>

#include <source_location>

namespace Tolmen
{
template class ReferenceBase<Quorl::VAcceptList>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

string textOf(const std::source_location& place)
{
    return string(place.file_name()) + ":" + std::to_string(place.line());
}

/// Leaves for crash reports where this thread is, and puts the old text back.
class SourceLine
{
public:
    /// \param line outlives this object.
    explicit SourceLine(const string& line) : before_(Tolmen::getLastKnownSourceCodeLine())
    {
        Tolmen::SetLastKnownSourceCodeLine(line.c_str());
    }
    SourceLine(const SourceLine&) = delete;
    SourceLine& operator=(const SourceLine&) = delete;
    ~SourceLine() { Tolmen::SetLastKnownSourceCodeLine(before_); }

private:
    const char* const before_;
};

/// Collects what the creators answer. Plain input creators, and entries whose module is not loaded,
/// have nothing to say.
class AcceptionGenerator final : public VManagedObjectIterator
{
public:
    explicit AcceptionGenerator(const RefPtr<VObject>& object) : object_(object) {}

    bool apply(int /*priority*/, const RefPtr<VManagedObject>& item,
               const string& /*name*/) override
    {
        const RefPtr<VCreatorBase> creator = item;
        if (!creator) return true;
        for (const RefPtr<VAcceptInfo>& info : ask(*creator))
        {
            if (!result) result = new VAcceptList;
            result->emplace_back(info, creator);
        }
        return true;
    }

    RefPtr<VAcceptList> result; // null until somebody accepts

private:
    VAcceptInfoList ask(VCreatorBase& creator) const
    {
        static const string line = textOf(std::source_location::current());
        const SourceLine here(line);
        return creator.accept(object_);
    }

    const RefPtr<VObject> object_;
};

} // namespace

VAcceptList::VAcceptList() = default;
VAcceptList::~VAcceptList() = default;

RefPtr<VAcceptList> VAcceptList::getAcceptors(const RefPtr<VObject>& object, int from, int to)
{
    static const string line = textOf(std::source_location::current());
    const SourceLine here(line);
    if (!object) return {};
    AcceptionGenerator generator(object);
    VManagedObject::traverse(typeid(VInputCreatorBase), generator, from, to);
    return generator.result;
}

void VAcceptListTracer::trace(const RefPtr<VCreatorBase>& /*creator*/,
                              const RefPtr<VObject>& /*object*/, const string& /*text*/)
{
}

} // namespace Quorl
