#include <quorl/foundation/Chunk.h>

#include <gtest/gtest.h>

#include <vector>

namespace Tolmen
{
namespace
{

TEST(Chunk, GivesItsElementsAndWhatTheyAre)
{
    Chunk<double> chunk(3, 2.5);

    EXPECT_EQ(chunk.base_vector(), std::vector<double>(3, 2.5));
    EXPECT_EQ(chunk.elements(), 3U);
    EXPECT_EQ(chunk.element_size(), sizeof(double));
    EXPECT_EQ(chunk.getType(), typeid(double));
    EXPECT_EQ(chunk.getBaseType(), typeid(double));
    EXPECT_EQ(chunk.data_ptr(), &chunk.base_vector()[0]);
    EXPECT_EQ(chunk.const_data_ptr(), chunk.data_ptr());
    static_cast<double*>(chunk.data_ptr())[1] = 7.0;
    EXPECT_EQ(chunk[1], 7.0);
}

TEST(Chunk, GivesNoAddressOfPackedElements)
{
    Chunk<bool> chunk(2, true);

    EXPECT_EQ(chunk.data_ptr(), nullptr);
    EXPECT_EQ(chunk.const_data_ptr(), nullptr);
    EXPECT_EQ(chunk.element_size(), 1U);
    EXPECT_TRUE(chunk[1]);
}

TEST(Chunk, MakesOthersOfItsKind)
{
    const RefPtr<ChunkBase> chunk(new Chunk<int>(1, 5));

    const RefPtr<ChunkBase> made = chunk->newChunk(4, true);
    EXPECT_EQ(made->getType(), typeid(int));
    EXPECT_EQ(made->elements(), 4U);
    const RefPtr<Chunk<int>> typed = RefPtr<TypedChunkBase<int>>(chunk)->createNewChunk(2, false);
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->base_vector(), std::vector<int>(2, 0));
}

TEST(Chunk, IsCopiedIntoOneOfItsOwn)
{
    const Chunk<double> chunk(2, 1.5);
    Chunk<double> copied(chunk);
    EXPECT_NE(copied.self.referer, chunk.self.referer);
    EXPECT_NE(copied.ID, chunk.ID);
    copied[0] = 3.0;
    EXPECT_EQ(chunk[0], 1.5);
    const auto number = copied.ID;
    copied = chunk;

    EXPECT_EQ(copied.base_vector(), chunk.base_vector());
    EXPECT_EQ(copied.ID, number);
}

TEST(Chunk, IsEmptyAndFreeByDefault)
{
    const auto before = ChunkBase::TotalMemsize;
    const Chunk<double> chunk;

    EXPECT_EQ(chunk.elements(), 0U);
    EXPECT_EQ(ChunkBase::TotalMemsize, before);
}

TEST(Chunk, GivesItsBytesBackWithItsLastHandle)
{
    const auto before = ChunkBase::TotalMemsize;
    RefPtr<ChunkBase> chunk(new Chunk<double>(4));
    chunk = chunk->newChunk(8, false);
    EXPECT_EQ(ChunkBase::TotalMemsize - before, 64);
    chunk = RefPtr<ChunkBase>();

    EXPECT_EQ(ChunkBase::TotalMemsize, before);
}

TEST(Chunk, CountsItsBytesAsOfItsConstruction)
{
    const auto before = ChunkBase::TotalMemsize;
    {
        Chunk<double> chunk(10);
        EXPECT_EQ(ChunkBase::TotalMemsize - before, 80);
        const Chunk<double> copied(chunk);
        EXPECT_EQ(ChunkBase::TotalMemsize - before, 160);
        chunk.resize(1000);
        EXPECT_EQ(ChunkBase::TotalMemsize - before, 160);
        const Chunk<bool> flags(3);
        EXPECT_EQ(ChunkBase::TotalMemsize - before, 163);
    }
    EXPECT_EQ(ChunkBase::TotalMemsize, before);
}

} // namespace
} // namespace Tolmen
