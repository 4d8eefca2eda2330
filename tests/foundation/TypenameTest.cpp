#include <quorl/foundation/Typename.h>

#include <gtest/gtest.h>

#include <list>

namespace Tolmen
{

struct Named
{
    struct Inner
    {
    };
};

namespace
{

/// A type whose name no compiler has made.
class Unmangled : public std::type_info
{
public:
    Unmangled() : std::type_info("not mangled") {}
};

TEST(Typename, IsReadable)
{
    EXPECT_EQ(Typename(typeid(double)), "double");
    EXPECT_EQ(Typename(typeid(Named)), "Tolmen::Named");
    EXPECT_EQ(Typename(typeid(Named::Inner)), "Tolmen::Named::Inner");
    EXPECT_EQ(Typename(typeid(unsigned long long)), "unsigned long long");
    EXPECT_EQ(Typename(typeid(void)), "void");
}

TEST(Typename, TellsInstancesOfATemplateApart)
{
    EXPECT_NE(Typename(typeid(std::list<int>)), Typename(typeid(std::list<long>)));
    EXPECT_EQ(Typename(typeid(std::list<int>)), Typename(typeid(std::list<int>)));
}

TEST(Typename, IsTheNameAsItStandsWhereThatCannotBeRead)
{
    EXPECT_EQ(Typename(Unmangled()), "not mangled");
}

} // namespace
} // namespace Tolmen
