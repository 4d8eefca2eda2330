#include <quorl/foundation/TypeInfo.h>

#include <quorl/foundation/Typename.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
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

TEST(TypeInfo, IsOrderedAsTypesAre)
{
    const std::vector<const std::type_info*> types{
        &typeid(int),    &typeid(double), &typeid(Named), &typeid(std::string),
        &typeid(Hidden), &typeid(void),   &typeid(char*)};
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
    EXPECT_EQ(&TypeInfo(reloaded).get(), &reloaded);
}

TEST(Typename, IsReadable)
{
    EXPECT_EQ(Typename(typeid(double)), "double");
    EXPECT_EQ(Typename(typeid(Named)), "Tolmen::Named");
    EXPECT_EQ(Typename(typeid(unsigned long long)), "unsigned long long");
    EXPECT_EQ(Typename(typeid(void)), "void");
    EXPECT_EQ(Typename(ModuleType("not mangled")), "not mangled");
}

} // namespace
} // namespace Tolmen
