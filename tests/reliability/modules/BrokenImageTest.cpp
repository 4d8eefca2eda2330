#include <tests/reliability/modules/BrokenImage.h>
#include <tests/reliability/modules/FolderOfModules.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>
#include <ostream>
#include <string>

/// A good module with one thing changed in its file. None of its code runs, and its neighbours do
/// their work.
namespace QuorlTest
{
namespace
{

std::string wordsAbout(const std::string& reason)
{
    return "Error while loading Zelm plugin\n ./harm.zelm \n\nThe problem is that \"" + reason +
           "\"\n";
}

const std::string kNoFormat = wordsAbout("Exec format error");
const std::string kNoTexts = "No Zelm version resource information available.\n";
const std::string kNoWord = "Could not load version string resource.\n";
const std::string kLoaderDecides; // its own words are told

struct Break
{
    const char* name;
    const std::string& reason;
    void (*act)(BrokenImage&);
};

void PrintTo(const Break& broken, std::ostream* stream)
{
    *stream << broken.name;
}

constexpr const char* kTold =
    "Loading Library [./harm.zelm] failed ;-(, see ZelmError.log for details.\n"
    "opened: 3\n"
    "creators: Good/first Good/last\n"
    "Good/first answers\n"
    "Good/last answers\n"
    "unloading ./first.zelm\n"
    "unloading ./last.zelm\n"
    "creators:\n"
    "done\n";

class RefusedFile : public FolderOfModules
{
protected:
    /// Looks at all that the host says, and at what it writes down.
    void expectRefusal(const std::string& reason)
    {
        open();
        EXPECT_EQ(out, kTold);
        EXPECT_EQ(log(), reason + "\n");
        EXPECT_EQ(status, 0) << err;
    }
};

class BrokenModule : public RefusedFile, public testing::WithParamInterface<Break>
{
};

TEST_P(BrokenModule, IsRefusedWithTheReasonWhileItsNeighboursWork)
{
    BrokenImage image(bytesOf(built("good", kHarm)));
    GetParam().act(image);
    write(kHarm, image.bytes);
    if (!GetParam().reason.empty()) return expectRefusal(GetParam().reason);
    const std::string words = wordsOfTheLoader();
    ASSERT_NE(words, "") << "the loader takes it";
    expectRefusal(wordsAbout(words));
}

std::size_t endOfHeaders(const BrokenImage& image)
{
    Elf64_Ehdr header;
    std::memcpy(&header, image.bytes.data(), sizeof header);
    return header.e_phoff + header.e_phnum * sizeof(Elf64_Phdr);
}

const Break kCuts[] = {
    {"ToNothing", kNoFormat, [](BrokenImage& image) { image.bytes.clear(); }},
    {"ToOneByte", kNoFormat, [](BrokenImage& image) { image.bytes.resize(1); }},
    {"BeforeItsHeaderEnds", kNoFormat, [](BrokenImage& image) { image.bytes.resize(63); }},
    {"BehindItsHeader", kNoFormat, [](BrokenImage& image) { image.bytes.resize(64); }},
    {"InItsTableOfSegments", kNoFormat,
     [](BrokenImage& image) { image.bytes.resize(endOfHeaders(image) - 1); }},
    {"BehindItsTableOfSegments", kNoFormat,
     [](BrokenImage& image) { image.bytes.resize(endOfHeaders(image)); }},
    {"InTheMiddle", kNoFormat,
     [](BrokenImage& image) { image.bytes.resize(image.bytes.size() / 2); }},
    {"BeforeItsLastByte", kNoFormat,
     [](BrokenImage& image) { image.bytes.resize(image.bytes.size() - 1); }},
};
INSTANTIATE_TEST_SUITE_P(IsCut, BrokenModule, testing::ValuesIn(kCuts),
                         [](const auto& test) { return test.param.name; });

const Break kHeaders[] = {
    {"IsNone", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_ident[EI_MAG1] = 'X'; }); }},
    {"IsOf32Bits", kNoFormat,
     [](BrokenImage& image) {
         image.header([](Elf64_Ehdr& h) { h.e_ident[EI_CLASS] = ELFCLASS32; });
     }},
    {"IsOfTheOtherByteOrder", kNoFormat,
     [](BrokenImage& image) {
         image.header([](Elf64_Ehdr& h) { h.e_ident[EI_DATA] = ELFDATA2MSB; });
     }},
    {"IsOfAnUnknownVersion", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_ident[EI_VERSION] = 9; }); }},
    {"IsOfAnotherMachine", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_machine = EM_SPARCV9; }); }},
    {"IsOfAProgram", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_type = ET_EXEC; }); }},
    {"IsOfAnObjectFile", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_type = ET_REL; }); }},
    {"IsOfACore", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_type = ET_CORE; }); }},
    {"HasNoSegments", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_phnum = 0; }); }},
    {"HasTooManySegments", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_phnum = 0xFFFF; }); }},
    {"HasSegmentsOfAnotherSize", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_phentsize = 32; }); }},
    {"OverlapsItsTableOfSegments", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_phoff = 16; }); }},
    {"HasItsSegmentsBehindTheEnd", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_phoff = 1 << 30; }); }},
    {"HasItsSegmentsBeyondAllFiles", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_phoff = ~0ULL - 8; }); }},
    {"HasItsSectionsBehindTheEnd", kNoFormat,
     [](BrokenImage& image) { image.header([](Elf64_Ehdr& h) { h.e_shoff = 1ULL << 40; }); }},
};
INSTANTIATE_TEST_SUITE_P(HeaderThat, BrokenModule, testing::ValuesIn(kHeaders),
                         [](const auto& test) { return test.param.name; });

const Break kSegments[] = {
    {"StartsBehindTheEnd", kNoFormat,
     [](BrokenImage& image) {
         image.segment(PT_LOAD, [](Elf64_Phdr& s) { s.p_offset = 1ULL << 40; }, 1);
     }},
    {"EndsBehindTheEnd", kNoFormat,
     [](BrokenImage& image) {
         image.segment(PT_LOAD, [](Elf64_Phdr& s) { s.p_filesz = 1ULL << 40; }, 1);
     }},
    {"WrapsRound", kNoFormat,
     [](BrokenImage& image) {
         image.segment(PT_LOAD, [](Elf64_Phdr& s) { s.p_filesz = ~0ULL - s.p_offset + 1; }, 1);
     }},
    {"HasNotesBehindTheEnd", kNoFormat,
     [](BrokenImage& image) {
         image.segment(PT_NOTE, [](Elf64_Phdr& s) { s.p_offset = 1ULL << 40; });
     }},
    {"IsNotWhereItsAddressSays", kLoaderDecides,
     [](BrokenImage& image) { image.segment(PT_LOAD, [](Elf64_Phdr& s) { s.p_vaddr += 8; }, 1); }},
    {"WantsMoreMemoryThanThereIs", kLoaderDecides,
     [](BrokenImage& image) {
         image.segment(PT_LOAD, [](Elf64_Phdr& s) { s.p_memsz = 1ULL << 50; }, 3);
     }},
    {"IsNeverLoaded", kLoaderDecides, [](BrokenImage& image) { image.withoutSegments(PT_LOAD); }},
    {"HasNoDynamicPart", kLoaderDecides,
     [](BrokenImage& image) { image.withoutSegments(PT_DYNAMIC); }},
    {"NeedsALibraryThatIsNotThere", kLoaderDecides,
     [](BrokenImage& image) { image.replace("libquorl.so", "libnobod.so"); }},
};
INSTANTIATE_TEST_SUITE_P(SegmentThat, BrokenModule, testing::ValuesIn(kSegments),
                         [](const auto& test) { return test.param.name; });

/// A note of the module's: sizes of name and text, type, name.
std::string note(char textSize, char type)
{
    const char bytes[] = {5, 0, 0, 0, textSize, 0, 0, 0, type, 0, 0, 0, 'Z', 'E', 'L', 'M'};
    return {bytes, sizeof bytes};
}

const Break kNotes[] = {
    {"OfAnotherOwner", kNoTexts,
     [](BrokenImage& image) {
         image.replace(note(20, 1), note(20, 1).replace(12, 4, "zelm"));
         image.withoutSegments(PT_NOTE);
     }},
    {"WithoutTheWord", kNoWord,
     [](BrokenImage& image) { image.replace(note(20, 1), note(20, 3)); }},
    {"WithAnEmptyWord", kNoWord,
     [](BrokenImage& image) { image.replace("ZELM_API_2017_AUG_07", std::string(20, '\0')); }},
    {"ThatIsLongerThanItsSegment", kNoTexts,
     [](BrokenImage& image) { image.replace(note(20, 1), note('\x7F', 1).replace(5, 1, "\x7F")); }},
};
INSTANTIATE_TEST_SUITE_P(HasANote, BrokenModule, testing::ValuesIn(kNotes),
                         [](const auto& test) { return test.param.name; });

TEST_F(RefusedFile, MayBeAPipeThatNobodyWrites)
{
    ASSERT_EQ(::mkfifo(path(kHarm).c_str(), 0600), 0);
    expectRefusal(kNoFormat);
}

TEST_F(RefusedFile, MayBeADeviceThatNeverEnds)
{
    std::filesystem::create_symlink("/dev/zero", path(kHarm));
    expectRefusal(kNoFormat);
}

TEST_F(RefusedFile, MayBeALinkToItself)
{
    std::filesystem::create_symlink(kHarm, path(kHarm));
    expectRefusal(wordsAbout("Too many levels of symbolic links"));
}

TEST_F(RefusedFile, MayBeAFolder)
{
    std::filesystem::create_directory(path(kHarm));
    expectRefusal(wordsAbout("Is a directory"));
}

} // namespace
} // namespace QuorlTest
