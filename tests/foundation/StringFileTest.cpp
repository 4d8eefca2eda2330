#include <quorl/foundation/StringFile.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

namespace Tolmen
{
namespace
{

/// A file that goes when it is closed.
struct TemporaryFile
{
    ~TemporaryFile() { std::fclose(file); }
    std::FILE* file = std::tmpfile();
};

std::string bytesOf(std::FILE* file)
{
    std::string bytes;
    std::rewind(file);
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) bytes += static_cast<char>(c);
    return bytes;
}

TEST(StringFile, ReadsBackWhatItWrote)
{
    const TemporaryFile temporary;
    const std::string texts[] = {"", "text", std::string("with\0zero", 9), std::string(200000, 'x'),
                                 "last"};
    for (const std::string& text : texts) EXPECT_TRUE(fputstring(text, temporary.file));
    std::rewind(temporary.file);

    for (const std::string& text : texts) EXPECT_EQ(fgetstring(temporary.file), text);
    EXPECT_EQ(fgetstring(temporary.file), "") << "at the end";
}

TEST(StringFile, WritesTheLengthInEightBytesLittleEndian)
{
    const TemporaryFile temporary;
    fputstring("", temporary.file);
    fputstring(std::string(258, 'a'), temporary.file);

    const std::string bytes = bytesOf(temporary.file);
    EXPECT_EQ(bytes.substr(0, 8), std::string(8, '\0'));
    EXPECT_EQ(bytes.substr(8, 8), std::string("\x02\x01\0\0\0\0\0\0", 8));
    EXPECT_EQ(bytes.size(), 16U + 258U);
}

TEST(StringFile, GivesWhatThereIsOfATextThatEndsEarly)
{
    const TemporaryFile temporary;
    std::fwrite("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F"
                "abc",
                1, 11, temporary.file);
    std::rewind(temporary.file);
    EXPECT_EQ(fgetstring(temporary.file), "abc") << "the stated length is not believed";

    const TemporaryFile cut;
    std::fwrite("\x03\0\0", 1, 3, cut.file);
    std::rewind(cut.file);
    EXPECT_EQ(fgetstring(cut.file), "");
}

TEST(StringFile, ReadsNoFurtherThanItsText)
{
    const TemporaryFile temporary;
    fputstring("text", temporary.file);
    std::fputs("behind", temporary.file);
    std::rewind(temporary.file);

    EXPECT_EQ(fgetstring(temporary.file), "text");
    EXPECT_EQ(std::fgetc(temporary.file), 'b');
}

TEST(StringFile, SaysWhenItCannotWrite)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> readOnly(std::fopen("/dev/null", "r"),
                                                                   std::fclose);
    ASSERT_TRUE(readOnly);
    EXPECT_FALSE(fputstring("text", readOnly.get()));
    EXPECT_FALSE(fputstring("", readOnly.get()));
}

} // namespace
} // namespace Tolmen
