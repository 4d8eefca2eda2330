#include <quorl/foundation/Typename.h>
#include <quorl/registry/InputCreatorCache.h>
#include <quorl/registry/VInputCreator.h>
#include <tests/modules/ModuleFolder.h>
#include <tests/support/InputCacheBytes.h>
#include <tests/support/TestCreator.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <complex>

/// A provider of values whose module is known from the caches alone.
namespace Quorl
{
namespace
{

using QuorlTest::outputOf;
using testing::ElementsAre;

using Complex = std::complex<float>;

struct Names final : VInputCreatorIterator
{
    bool apply(const WeakPtr<VInputCreatorBase>& creator) override
    {
        names.push_back(creator->getName());
        return true;
    }
    std::vector<string> names;
};

struct OfflineSupplier : QuorlTest::ModuleFolder
{
    OfflineSupplier()
    {
        LoadVModule(path);
        QuorlTest::NoteItems items;
        UnloadVModule(path, items);
        QuorlTest::InputCacheBytes bytes;
        bytes.number64(1).number64(1).entry(Tolmen::Typename(typeid(Complex)), "Supplier/Complex");
        write("inputs.cache", bytes.bytes());
        outputOf([&] { EXPECT_TRUE(LoadInputCreatorCache("inputs.cache")); });
    }
    ~OfflineSupplier() override
    {
        Names all; // what a walk loads is not known from the cache alone any more
        outputOf([&] { iterateVInputCreators(typeid(Complex), all); });
    }

    const string path = add("supplier", "supplier.zelm");
};

TEST_F(OfflineSupplier, IsLoadedWhereItIsTheBest)
{
    WeakPtr<VInputCreatorBase> found;
    EXPECT_EQ(outputOf([&] { found = findBestVInputCreator(typeid(Complex), {}); }),
              "VCreatorBaseInfo: No Creator, need to load [supplier.zelm]\n");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->getName(), "Supplier/Complex");
    EXPECT_EQ(found->getLoadModule(), path);
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(findBestVInputCreator(typeid(Complex), {}), found); }), "");
}

TEST_F(OfflineSupplier, IsNotLoadedWhileAnotherIsAsGood)
{
    const QuorlTest::Registered other(new VInputCreatorBase("Live/Complex", 0, {}, nullptr));
    registerVInput(typeid(Complex), other.handle());
    EXPECT_EQ(
        outputOf([&] { EXPECT_EQ(findBestVInputCreator(typeid(Complex), {}), other.handle()); }),
        "");
    EXPECT_FALSE(VModules::find(path));
    unregisterVInput(typeid(Complex), other.handle());
}

TEST_F(OfflineSupplier, IsVisitedOnceThoughItRegistersItselfWhenItIsLoaded)
{
    Names first;
    outputOf([&] { EXPECT_TRUE(iterateVInputCreators(typeid(Complex), first)); });
    EXPECT_THAT(first.names, ElementsAre("Supplier/Complex"));
    Names second;
    EXPECT_TRUE(iterateVInputCreators(typeid(Complex), second));
    EXPECT_THAT(second.names, ElementsAre("Supplier/Complex"));
}

TEST_F(OfflineSupplier, IsNotLoadedForAnotherType)
{
    struct Unsupplied;
    WeakPtr<VInputCreatorBase> found;
    EXPECT_EQ(outputOf([&] { found = findBestVInputCreator(typeid(Unsupplied*), {}); }), "");
    EXPECT_FALSE(found);
    EXPECT_FALSE(VModules::find(path));
}

} // namespace
} // namespace Quorl
