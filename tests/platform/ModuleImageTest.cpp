#include <quorl/platform/ModuleImage.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <elf.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <vector>

namespace Tolmen::Platform
{
namespace
{

using QuorlTest::bytesOf;

const char* const kNoLibrary = "Exec format error";

std::string builtModule(const std::string& folder, const std::string& stem)
{
    return std::string(TEST_MODULES) + "/" + folder + "/" + stem + ".zelm";
}

struct NoteText
{
    std::uint32_t type;
    std::string owner;
    std::string text;
};

std::string padded(std::string bytes, std::size_t alignment = 4)
{
    bytes.resize((bytes.size() + alignment - 1) / alignment * alignment);
    return bytes;
}

std::string noteBytes(const NoteText& note, std::size_t alignment = 4)
{
    const Elf64_Nhdr header{static_cast<Elf64_Word>(note.owner.size()),
                            static_cast<Elf64_Word>(note.text.size()), note.type};
    std::string bytes(sizeof header, '\0');
    std::memcpy(bytes.data(), &header, sizeof header);
    return bytes + padded(note.owner, alignment) + padded(note.text, alignment);
}

/// A library of this machine with one segment of notes, and nothing else.
struct Image
{
    Image()
    {
        const std::string model = bytesOf(builtModule("version1", "versioned"));
        std::memcpy(&header, model.data(), sizeof header);
        header.e_phoff = sizeof header;
        header.e_phnum = 1;
        header.e_shoff = 0;
        header.e_shnum = 0;
        segment.p_type = PT_NOTE;
        segment.p_offset = sizeof header + sizeof segment;
        segment.p_align = 4;
    }

    std::string bytes() const
    {
        Elf64_Phdr placed = segment;
        if (placed.p_filesz == 0) placed.p_filesz = notes.size();
        std::string all(sizeof header + sizeof placed, '\0');
        std::memcpy(all.data(), &header, sizeof header);
        std::memcpy(all.data() + sizeof header, &placed, sizeof placed);
        return all + notes;
    }

    Elf64_Ehdr header = {};
    Elf64_Phdr segment = {};
    std::string notes = noteBytes({1, std::string("ZELM\0", 5), "the word"}) +
                        noteBytes({2, std::string("ZELM\0", 5), "the place"});
};

struct ModuleImageTest : testing::Test
{
    ModuleImage imageOf(const std::string& bytes) const
    {
        const std::string path = folder / "image";
        QuorlTest::writeBytes(path, bytes);
        return ModuleImage(path);
    }

    const QuorlTest::TemporaryFolder folder;
};

TEST_F(ModuleImageTest, ReadsTheTextsOfAModule)
{
    const ModuleImage image(builtModule("version1", "versioned"));
    EXPECT_EQ(image.error(), "");
    EXPECT_TRUE(image.hasTexts());
    EXPECT_EQ(image.text(1, 1023), "ZELM_API_2017_AUG_07");
    EXPECT_TRUE(image.text(2, 4095).ends_with("tests/modules/files"));
    EXPECT_EQ(image.text(3, 100), "");
    EXPECT_EQ(image.text(1, 4), "ZELM");
}

TEST_F(ModuleImageTest, ReadsNotesThatAreMadeByHand)
{
    const ModuleImage image = imageOf(Image().bytes());
    EXPECT_EQ(image.error(), "");
    EXPECT_EQ(image.text(1, 100), "the word");
    EXPECT_EQ(image.text(2, 100), "the place");
}

TEST_F(ModuleImageTest, TakesTheFirstTextOfANumberUpToItsEnd)
{
    Image made;
    made.notes = noteBytes({1, "OTHER", "not this one"}) +
                 noteBytes({1, std::string("ZELM\0", 5), std::string("first\0hidden", 12)}) +
                 noteBytes({1, std::string("ZELM\0", 5), "second"});
    EXPECT_EQ(imageOf(made.bytes()).text(1, 100), "first");

    made.notes = noteBytes({1, "ZELM", "without the zero byte"});
    EXPECT_FALSE(imageOf(made.bytes()).hasTexts());
    made.notes = noteBytes({1, std::string("ZELM\0", 5), ""});
    EXPECT_TRUE(imageOf(made.bytes()).hasTexts());
    EXPECT_EQ(imageOf(made.bytes()).text(1, 100), "");
}

TEST_F(ModuleImageTest, ReadsNoMoreNotesInAllThanAModuleMayHave)
{
    Image made;
    constexpr std::uint32_t kFiller = 1000;
    const std::string filler = noteBytes({kFiller, "OTHER", std::string(700'000, 'x')});
    const std::string texts = made.notes;
    made.header.e_phnum = 3;
    made.segment.p_offset = sizeof made.header + 3 * sizeof made.segment;
    made.notes = filler + texts;
    Elf64_Phdr large = made.segment;
    large.p_filesz = filler.size();
    Elf64_Phdr small = made.segment;
    small.p_offset += filler.size();
    small.p_filesz = texts.size();

    const auto imageWith = [&](const std::vector<Elf64_Phdr>& segments) {
        std::string bytes(made.segment.p_offset, '\0');
        std::memcpy(bytes.data(), &made.header, sizeof made.header);
        std::memcpy(bytes.data() + sizeof made.header, segments.data(),
                    segments.size() * sizeof(Elf64_Phdr));
        return imageOf(bytes + made.notes);
    };
    EXPECT_EQ(imageWith({large, large, small}).text(1, 100), "the word")
        << "what is passed over takes nothing from what follows";
    Elf64_Phdr both = made.segment;
    both.p_filesz = made.notes.size();
    EXPECT_EQ(imageWith({large, both, large}).hasTexts(), false);
    EXPECT_EQ(imageWith({both, large, large}).text(2, 100), "the place");
}

TEST_F(ModuleImageTest, LooksThroughFourThousandSegmentsAndNoMore)
{
    const auto imageWith = [&](std::uint16_t count) {
        Image made;
        made.header.e_phnum = count;
        made.segment.p_offset += (count - 1) * sizeof made.segment;
        std::string bytes = made.bytes();
        bytes.insert(bytes.size() - made.notes.size(), (count - 1) * sizeof made.segment, '\0');
        return imageOf(bytes);
    };
    EXPECT_EQ(imageWith(4096).text(1, 100), "the word");
    EXPECT_NE(imageWith(4097).error(), "");
}

TEST_F(ModuleImageTest, KeepsNoTextsOfNumbersThatNoModuleHas)
{
    constexpr unsigned kMost = ModuleImage::kMostNumber;
    Image made;
    made.notes = noteBytes({kMost + 1, std::string("ZELM\0", 5), "too high"});
    EXPECT_FALSE(imageOf(made.bytes()).hasTexts());
    made.notes += noteBytes({0xFFFFFFFF, std::string("ZELM\0", 5), "the highest"}) +
                  noteBytes({kMost, std::string("ZELM\0", 5), "the last"});
    const ModuleImage image = imageOf(made.bytes());
    EXPECT_TRUE(image.hasTexts());
    EXPECT_EQ(image.text(kMost, 100), "the last");
    EXPECT_EQ(image.text(kMost + 1, 100), "");
}

TEST_F(ModuleImageTest, StepsByEightWhereASegmentSaysSo)
{
    Image made;
    made.segment.p_align = 8;
    made.notes = noteBytes({5, std::string("GNU\0", 4), "x"}, 8) +
                 noteBytes({1, std::string("ZELM\0", 5), "aligned"}, 8);
    EXPECT_EQ(imageOf(made.bytes()).text(1, 100), "aligned");
}

TEST_F(ModuleImageTest, RefusesWhatIsNoLibraryOfThisMachine)
{
    const auto refuses = [&](auto&& change) {
        Image made;
        change(made);
        EXPECT_EQ(imageOf(made.bytes()).error(), kNoLibrary);
    };
    refuses([](Image& image) { image.header.e_ident[0] = 'M'; });
    refuses([](Image& image) { image.header.e_ident[EI_CLASS] = ELFCLASS32; });
    refuses([](Image& image) { image.header.e_ident[EI_DATA] = ELFDATA2MSB; });
    refuses([](Image& image) { image.header.e_ident[EI_VERSION] = 9; });
    refuses([](Image& image) { image.header.e_type = ET_EXEC; });
    refuses([](Image& image) { image.header.e_machine = EM_68K; });
    refuses([](Image& image) { image.header.e_phentsize = 32; });
    refuses([](Image& image) { image.header.e_phnum = 0; });
    refuses([](Image& image) { image.header.e_phnum = 2; });
    refuses([](Image& image) { image.header.e_phnum = 0xFFFF; });
    refuses([](Image& image) { image.header.e_phoff = ~std::uint64_t{0}; });
    refuses([](Image& image) { image.segment.p_offset = ~std::uint64_t{0}; });
    refuses([](Image& image) { image.segment.p_filesz = ~std::uint64_t{0}; });
    refuses([](Image& image) { image.segment.p_filesz = image.notes.size() + 1; });
    refuses([](Image& image) {
        image.segment.p_type = PT_LOAD;
        image.segment.p_filesz = 1 << 20;
    });
    refuses([](Image& image) {
        image.header.e_shoff = 64;
        image.header.e_shnum = 1000;
    });
    EXPECT_EQ(imageOf("").error(), kNoLibrary);
    EXPECT_EQ(imageOf("#!/bin/sh\n").error(), kNoLibrary);
}

TEST_F(ModuleImageTest, EndsAtANoteThatReachesBeyondItsSegment)
{
    for (const std::uint32_t size : {100U, 0x7FFFFFFFU, 0xFFFFFFFDU, 0xFFFFFFFFU})
        for (const bool ofName : {true, false})
        {
            Image made;
            Elf64_Nhdr broken{ofName ? size : 5, ofName ? 0 : size, 2};
            std::string bytes(sizeof broken, '\0');
            std::memcpy(bytes.data(), &broken, sizeof broken);
            made.notes = noteBytes({1, std::string("ZELM\0", 5), "before"}) + bytes +
                         padded(std::string("ZELM\0", 5));
            const ModuleImage image = imageOf(made.bytes());
            EXPECT_EQ(image.text(1, 100), "before");
            EXPECT_EQ(image.text(2, 100), "");
        }
}

TEST_F(ModuleImageTest, TakesANoteThatEndsWithItsSegment)
{
    for (const std::string text : {"last", ""})
    {
        Image made;
        const Elf64_Nhdr head{5, static_cast<std::uint32_t>(text.size()), 1};
        made.notes.assign(sizeof head, '\0');
        std::memcpy(made.notes.data(), &head, sizeof head);
        made.notes += padded(std::string("ZELM\0", 5)) + text;
        const ModuleImage image = imageOf(made.bytes());
        EXPECT_TRUE(image.hasTexts());
        EXPECT_EQ(image.text(1, 100), text);
    }
}

TEST_F(ModuleImageTest, TakesNoNotesOfASegmentThatIsTooLarge)
{
    Image made;
    made.notes.resize((1 << 20) + 4);
    EXPECT_FALSE(imageOf(made.bytes()).hasTexts());
    made.notes.resize(1 << 20);
    EXPECT_TRUE(imageOf(made.bytes()).hasTexts());
}

TEST_F(ModuleImageTest, RefusesWhatIsNoFile)
{
    EXPECT_EQ(ModuleImage((folder / "absent").string()).error(), "No such file or directory");
    EXPECT_EQ(ModuleImage(folder.path().string()).error(), "Is a directory");
    const std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(ModuleImage(pipe).error(), kNoLibrary) << "and does not wait for a writer";
    EXPECT_EQ(ModuleImage("/dev/null").error(), kNoLibrary);
}

TEST_F(ModuleImageTest, IsRefusedWhenItIsCutAnywhere)
{
    const std::string whole = bytesOf(builtModule("noword", "noword"));
    for (std::size_t length = 0; length < whole.size(); length += 64)
        EXPECT_EQ(imageOf(whole.substr(0, length)).error(), kNoLibrary) << length;
    EXPECT_EQ(imageOf(whole).error(), "");
}

TEST_F(ModuleImageTest, ReadsAnythingWithoutHarm)
{
    const auto seed = std::random_device()();
    std::mt19937 random(seed);
    SCOPED_TRACE(seed);
    const std::string whole = Image().bytes();
    for (int round = 0; round < 3000; ++round)
    {
        std::string bytes = whole;
        for (auto left = 1 + random() % 8; left > 0; --left)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        const ModuleImage image = imageOf(bytes);
        EXPECT_LE(image.text(1, 1023).size(), whole.size());
    }
}

} // namespace
} // namespace Tolmen::Platform
