#include <quorl/foundation/Interface.h>

#include <quorl/foundation/Intercube.h>

#include <gtest/gtest.h>

namespace Tolmen
{
namespace
{

struct Service : Interface<Service>
{
};

struct Special final : Service
{
};

/// A service for a type that it does not derive to.
struct NumberService final : Interface<int>
{
};

TEST(Interface, HasTheDomainOfItsArgumentWhateverIsDerivedFromIt)
{
    EXPECT_EQ(Service().getInterfaceDomain(), typeid(Service));
    EXPECT_EQ(Special().getInterfaceDomain(), typeid(Service));
    EXPECT_EQ(NumberService().getInterfaceDomain(), typeid(int));
}

TEST(Interface, IsHeldAsAnInterfaceBase)
{
    const RefPtr<InterfaceBase> base(new Special);
    const RefPtr<Service> service(base);
    const RefPtr<NumberService> other(base);

    EXPECT_TRUE(service);
    EXPECT_FALSE(other);
}

TEST(InterfaceBase, GoesOnByDefault)
{
    const RefPtr<Service> service(new Service);
    const RefPtr<InterfaceIterationParameter> parameter(new InterfaceIterationParameter);
    Intercube cube;

    EXPECT_TRUE(service->apply(cube, parameter));
    EXPECT_TRUE(service->apply_const(cube, parameter));
}

} // namespace
} // namespace Tolmen
