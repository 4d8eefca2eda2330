#include <quorl/registry/VCreatorProperties.h>

namespace Quorl
{

template class VCreatorProperty<kAllCreatorProperties>;

VCreatorPropertyBase::VCreatorPropertyBase() = default;

void VCreatorPropertyBase::assign(const VCreatorPropertyBase& other)
{
    if (&other == this) return;
    for (std::size_t index = 0; index < kElements; ++index)
        if (!other.element[index].empty()) element[index] = other.element[index];
}

string VCreatorPropertyBase::Author() const
{
    return element[AuthorName];
}

string VCreatorPropertyBase::keyname(const char* separator) const
{
    const string tail = element[Variant].empty() ? string() : "(" + element[Variant] + ")";
    if (element[Category].empty()) return element[Name] + tail;
    return element[Category] + separator + element[Name] + tail;
}

VCreatorProperties::VCreatorProperties(const string& key, const string& summary,
                                       const string& description)
{
    initializeFromKey(key);
    element[Summary] = summary;
    element[Description] = description;
}

void VCreatorProperties::initializeFromKey(const string& key)
{
    if (key.empty()) return;
    string path = key;
    if (const auto open = path.rfind('('); path.back() == ')' && open != string::npos)
    {
        element[Variant] = path.substr(open + 1, path.size() - open - 2);
        path.resize(open);
    }
    const auto slash = path.rfind('/');
    if (slash != string::npos) element[Category] = path.substr(0, slash);
    element[Name] = slash == string::npos ? path : path.substr(slash + 1);
}

} // namespace Quorl
