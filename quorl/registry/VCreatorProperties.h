#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

#include <array>
#include <cstddef>

namespace Quorl
{

/// The descriptive texts of a creator, or of a category of creators. The kernel reads those that
/// have a name here; the others are for user interfaces.
struct QUORL_API VCreatorPropertyElements
{
    enum Index : std::size_t
    {
        Category = 0,      ///< the path in front of the name
        Name = 1,          ///< under which the creator is identified
        Variant = 2,       ///< of several creators for one purpose
        Summary = 3,       ///< one line
        Description = 4,   ///< as long as it takes
        AuthorName = 7,    ///< who wrote it
        Applications = 10, ///< for which it is meant, separated by semicolons
    };

    static constexpr std::size_t kElements = 17;

    std::array<string, kElements> element;
};

/// Operations on the texts.
class QUORL_API VCreatorPropertyBase : public VCreatorPropertyElements
{
public:
    VCreatorPropertyBase();

    /// Merges: takes over the elements of `other` that are not empty.
    void assign(const VCreatorPropertyBase& other);

    string Author() const;

    /// "category", the separator, "name(variant)", or what there is of it. With a slash this is
    /// what `VCreatorProperties::initializeFromKey` reads.
    /// \param separator not null.
    string keyname(const char* separator) const;
};

/// One element of the texts, by its number.
template <unsigned index>
class QUORL_TEMPLATE_API VCreatorProperty : public VCreatorPropertyBase
{
};

constexpr unsigned kAllCreatorProperties = 4294967295u; ///< stands for all elements together

extern template class VCreatorProperty<kAllCreatorProperties>;

/// The texts that are made from a key, "category/name(variant)".
class QUORL_API VCreatorProperties : public VCreatorProperty<kAllCreatorProperties>
{
public:
    VCreatorProperties(const string& key, const string& summary, const string& description);

    /// Reads category, name and variant from a key. The variant is what stands in parentheses at
    /// its very end, the name what stands behind the last slash. An empty key changes nothing; of a
    /// key without a slash, the category stays.
    void initializeFromKey(const string& key);
};

} // namespace Quorl
