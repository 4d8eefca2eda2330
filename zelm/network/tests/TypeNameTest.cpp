#include <zelm/network/TypeName.h>

#include <quorl/foundation/Typename.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace Zelm
{
namespace
{

struct string
{
};

TEST(TypeName, IsThatOfTheKernel)
{
    EXPECT_EQ(typeNameOf(typeid(double)), "double");
    EXPECT_EQ(typeNameOf(typeid(unsigned int)), "unsigned int");
    EXPECT_EQ(typeNameOf(typeid(string)), "Zelm::(anonymous namespace)::string");
}

TEST(TypeName, TellsTextsByTheNameThatPeopleKnow)
{
    EXPECT_EQ(typeNameOf(typeid(std::string)), "string");
    EXPECT_EQ(typeNameOf(typeid(const std::string*)), "string const*");
    EXPECT_EQ(typeNameOf(typeid(std::vector<std::string>)).find("basic_string"), std::string::npos);
}

TEST(TypeName, LeadsBackToTheKernel)
{
    using Table = std::map<std::string, std::vector<std::string>>;
    for (const std::type_info* type :
         {&typeid(std::string), &typeid(double), &typeid(string), &typeid(Table)})
    {
        EXPECT_EQ(kernelTypeName(typeNameOf(*type)), Tolmen::Typename(*type));
        EXPECT_EQ(kernelTypeName(Tolmen::Typename(*type)), Tolmen::Typename(*type));
    }
}

} // namespace
} // namespace Zelm
