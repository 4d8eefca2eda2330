#include <quorl/foundation/TypeInfo.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace Tolmen
{

struct Named
{
};

namespace
{

struct Hidden
{
};
struct HiddenToo
{
};

TEST(TypeInfo, IsOrderedAsTypesAre)
{
    const std::vector<const std::type_info*> types{
        &typeid(int),    &typeid(double),    &typeid(Named), &typeid(std::string),
        &typeid(Hidden), &typeid(HiddenToo), &typeid(void),  &typeid(char*)};
    for (const std::type_info* left : types)
        for (const std::type_info* right : types)
        {
            EXPECT_EQ(TypeInfo(*left) < TypeInfo(*right), left->before(*right))
                << left->name() << " " << right->name();
            EXPECT_EQ(TypeInfo(*left) == TypeInfo(*right), *left == *right);
        }
}

TEST(TypeInfo, GivesTheTypeBack)
{
    const TypeInfo key(typeid(Named));
    EXPECT_EQ(key.get(), typeid(Named));
    std::map<TypeInfo, int> map;
    map[typeid(Named)] = 1;
    map[typeid(int)] = 2;
    EXPECT_EQ(map[typeid(Named)], 1);
}

/// A type as a module would bring it, which goes with the module.
class ModuleType : public std::type_info
{
public:
    explicit ModuleType(const char* mangled) : std::type_info(mangled) {}
};

TEST(TypeInfo, StaysUsableWhenTheTypeHasGone)
{
    auto name = std::make_unique<std::string>("N6Module4TypeE");
    auto type = std::make_unique<ModuleType>(name->c_str());
    std::map<TypeInfo, int> map;
    map[*type] = 5;
    map[typeid(int)] = 6;
    type.reset();
    name.reset();

    auto again = std::make_unique<std::string>("N6Module4TypeE");
    const ModuleType reloaded(again->c_str());
    EXPECT_EQ(map.size(), 2U);
    EXPECT_EQ(map.at(reloaded), 5);
    EXPECT_EQ(TypeInfo(reloaded).get(), reloaded);
}

TEST(TypeInfo, IsTheSameKeyForEachOfSeveralTypeObjectsOfOneName)
{
    const std::string first = "N6Module5OtherE";
    const std::string second = first;
    const ModuleType here(first.c_str());
    const ModuleType there(second.c_str());

    EXPECT_TRUE(TypeInfo(here) == TypeInfo(there));
    EXPECT_FALSE(TypeInfo(here) < TypeInfo(there));
    EXPECT_FALSE(TypeInfo(there) < TypeInfo(here));
}

TEST(TypeInfoThreads, MakeKeysAtOnce)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 1000; ++i)
            {
                EXPECT_EQ(TypeInfo(typeid(Named)).get(), typeid(Named));
                EXPECT_TRUE(TypeInfo(typeid(Hidden)) == TypeInfo(typeid(Hidden)));
            }
        });
    for (std::thread& thread : threads) thread.join();
}

} // namespace
} // namespace Tolmen
