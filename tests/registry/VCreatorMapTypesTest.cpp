#include <quorl/registry/VCreatorMapTypes.h>

#include <gtest/gtest.h>

#include <map>
#include <type_traits>

namespace Quorl
{
namespace
{

template <class Table>
concept LosesDomains =
    requires(Table& table) { table.erase(table.begin()); } ||
    requires(Table& table) { table.clear(); } || requires(Table& table) { table = {}; } ||
    std::is_convertible_v<Table&, std::map<Tolmen::TypeInfo, RefPtr<VCreatorMap>>&>;

static_assert(LosesDomains<std::map<Tolmen::TypeInfo, RefPtr<VCreatorMap>>>);
static_assert(!LosesDomains<VCreatorMapTypes>, "the domain asked last is remembered by its place");

TEST(VCreatorMapTypes, HasADomainFromItsFirstUse)
{
    struct Unused;
    EXPECT_FALSE(VCreatorTypes().contains(typeid(Unused*)));

    VCreatorMap* const made = VCreators(typeid(Unused*));

    EXPECT_EQ(VCreatorTypes().at(typeid(Unused*)).rawptr(), made);
    EXPECT_EQ(VCreators(typeid(Unused*)), made);
}

TEST(VCreatorMapTypes, SeesWhatBecomesOfTheDomainThatWasAskedLast)
{
    struct Changed;
    VCreators(typeid(Changed*));
    const RefPtr<VCreatorMap> other(new VCreatorMap);

    VCreatorTypes()[typeid(Changed*)] = other;
    EXPECT_EQ(VCreators(typeid(Changed*)), other.rawptr());

    VCreatorTypes()[typeid(Changed*)] = RefPtr<VCreatorMap>();
    VCreatorMap* const anew = VCreators(typeid(Changed*));
    EXPECT_TRUE(anew);
    EXPECT_NE(anew, other.rawptr());
    EXPECT_TRUE(anew->empty());
}

} // namespace
} // namespace Quorl
