#include <quorl/foundation/Intercube.h>

#include <quorl/foundation/Interface.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace Tolmen
{
namespace
{

struct Service : Interface<Service>
{
};

/// Kept under the domain of its base, whatever its own type.
struct Special final : Service
{
};

struct Other final : Interface<Other>
{
};

/// Makes services on demand.
class Making final : public Intercube
{
public:
    RefPtr<InterfaceBase> createInterface(const std::type_info& domain) const override
    {
        ++asked;
        if (domain != typeid(Service)) return {};
        return RefPtr<InterfaceBase>(new Service);
    }
    mutable int asked = 0;
};

TEST(Intercube, FindsNothingWhileEmpty)
{
    Intercube cube;

    EXPECT_EQ(cube.findInterface(typeid(Service)).referer, nullptr);
    EXPECT_EQ(cube.getInterface(typeid(Service)).referer, nullptr);
}

TEST(Intercube, MakesAnInterfaceOnceByBeingAskedForIt)
{
    Making cube;
    EXPECT_EQ(cube.findInterface(typeid(Service)).referer, nullptr) << "finding makes none";

    const RefPtr<InterfaceBase> made = cube.getInterface(typeid(Service));
    EXPECT_TRUE(made);
    EXPECT_EQ(cube.getInterface(typeid(Service)), made);
    EXPECT_EQ(cube.findInterface(typeid(Service)), made);
    EXPECT_EQ(cube.asked, 1);
    cube.getInterface(typeid(Other));
    cube.getInterface(typeid(Other));
    EXPECT_EQ(cube.asked, 3) << "at every miss";
}

TEST(Intercube, KeepsAnInterfaceUnderItsDomain)
{
    const Intercube cube;
    const RefPtr<Special> special(new Special);
    cube.addInterface(special);

    const RefPtr<Service> found = cube.findInterface(typeid(Service));
    EXPECT_EQ(found, special);
    EXPECT_EQ(cube.findInterface(typeid(Special)).referer, nullptr);
    EXPECT_EQ(special->getInterfaceDomain(), typeid(Service));
}

TEST(Intercube, ReplacesTheInterfaceOfADomain)
{
    Intercube cube;
    WeakPtr<InterfaceBase> first;
    {
        const RefPtr<InterfaceBase> service(new Service);
        first = service;
        cube.addInterface(service);
    }
    EXPECT_TRUE(first) << "owned";
    cube.addInterface(RefPtr<InterfaceBase>(new Special));

    EXPECT_FALSE(first);
    EXPECT_TRUE(RefPtr<Special>(cube.findInterface(typeid(Service))));
}

TEST(Intercube, MakesANewInterfaceWhereTheOldOneHasDied)
{
    Making cube;
    const RefPtr<InterfaceBase> first = cube.getInterface(typeid(Service));
    delete first.rawptr();
    EXPECT_FALSE(cube.findInterface(typeid(Service)));
    const RefPtr<InterfaceBase> second = cube.getInterface(typeid(Service));

    EXPECT_TRUE(second);
    EXPECT_NE(second, first);
    EXPECT_EQ(cube.findInterface(typeid(Service)), second);
}

TEST(Intercube, DropsItsInterfacesWhenItEnds)
{
    WeakPtr<InterfaceBase> service;
    {
        Making cube;
        service = cube.getInterface(typeid(Service));
        EXPECT_EQ(service.referer->strong, 1);
    }
    EXPECT_FALSE(service);
}

TEST(Intercube, SharesItsInterfacesWithACopy)
{
    Intercube cube;
    cube.addInterface(RefPtr<InterfaceBase>(new Service));
    const Intercube copied(cube);

    EXPECT_EQ(copied.findInterface(typeid(Service)), cube.findInterface(typeid(Service)));
}

TEST(Intercube, IsAssignedTheInterfacesOfAnother)
{
    Intercube cube;
    cube.addInterface(RefPtr<InterfaceBase>(new Service));
    const RefPtr<InterfaceBase> service = cube.findInterface(typeid(Service));
    Intercube other;
    other.addInterface(RefPtr<InterfaceBase>(new Other));

    other = cube;

    EXPECT_EQ(other.findInterface(typeid(Service)), service);
    EXPECT_FALSE(other.findInterface(typeid(Other)));
    other = *&other;
    EXPECT_EQ(other.findInterface(typeid(Service)), service);
}

/// Does something when it ends.
struct Ending final : Interface<Ending>
{
    ~Ending() override { whenEnded(); }
    std::function<void()> whenEnded;
};

TEST(Intercube, MayBeAskedByWhatEndsWithIt)
{
    bool wasFound = true;
    {
        Making cube;
        cube.addInterface(RefPtr<InterfaceBase>(new Service));
        const RefPtr<Ending> ending(new Ending);
        ending->whenEnded = [&] {
            wasFound = static_cast<bool>(cube.findInterface(typeid(Ending)));
        };
        cube.addInterface(ending);
    }
    EXPECT_FALSE(wasFound);
}

TEST(Intercube, DropsWhatComesWhileItEnds)
{
    const RefPtr<InterfaceBase> late(new Service);
    {
        Making cube;
        const RefPtr<Ending> ending(new Ending);
        ending->whenEnded = [&] { cube.addInterface(late); };
        cube.addInterface(ending);
    }
    EXPECT_EQ(late.referer->strong, 1);
}

TEST(Intercube, MayEndWithTheInterfaceThatIsReplaced)
{
    auto cube = std::make_unique<Making>();
    {
        const RefPtr<Ending> ending(new Ending);
        ending->whenEnded = [&] { cube.reset(); };
        cube->addInterface(ending);
    }
    const RefPtr<Ending> next(new Ending);
    next->whenEnded = [] {};

    cube->addInterface(next);

    EXPECT_FALSE(cube);
}

} // namespace
} // namespace Tolmen
