#include "Font.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <cmath>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace Maps
{

/// What FreeType holds for a font. Its lengths are in 64ths of a pixel.
struct Font::Face
{
    Face(const std::filesystem::path& path, double size)
    {
        const bool isReady = FT_Init_FreeType(&library) == 0 &&
                             FT_New_Face(library, path.string().c_str(), 0, &face) == 0 &&
                             FT_Set_Char_Size(face, 0, std::lround(size * 64.0), 72, 72) == 0;
        if (isReady) return;
        release(); // the destructor does not run for what was never built
        throw MapError::about(path, "is no usable font");
    }

    ~Face() { release(); }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    void release()
    {
        if (face) FT_Done_Face(face);
        if (library) FT_Done_FreeType(library);
    }

    /// Loads an outline. Light hinting snaps it to whole rows alone, so that letters are sharp and
    /// keep their distances.
    bool load(char32_t letter) const
    {
        return FT_Load_Char(face, letter, FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LIGHT) == 0 &&
               face->glyph->format == FT_GLYPH_FORMAT_OUTLINE;
    }

    /// Pixels from the letter loaded to the next one, not rounded.
    double advance() const { return static_cast<double>(face->glyph->linearHoriAdvance) / 65536.0; }

    FT_Library library = nullptr;
    FT_Face face = nullptr;
};

namespace
{

std::filesystem::path findFont(Font::Weight weight)
{
    constexpr std::string_view kFolders[] = {
        "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/dejavu-sans-fonts",
        "/usr/share/fonts/TTF", "/usr/share/fonts/dejavu", "/usr/local/share/fonts/dejavu"};
    const std::string name =
        weight == Font::Weight::Bold ? "DejaVuSans-Bold.ttf" : "DejaVuSans.ttf";
    for (const std::string_view folder : kFolders)
    {
        const std::filesystem::path path = std::filesystem::path(folder) / name;
        std::error_code error;
        if (std::filesystem::is_regular_file(path, error)) return path;
    }
    throw MapError("the font " + name + " is not installed (package fonts-dejavu-core)");
}

/// The letters of well-formed UTF-8. A broken sequence gives wrong letters and no more.
std::vector<char32_t> letters(const std::string& text)
{
    std::vector<char32_t> result;
    for (const char byte : text)
    {
        const auto value = static_cast<unsigned char>(byte);
        if (value < 0x80U)
            result.push_back(value);
        else if (value >= 0xF0U)
            result.push_back(value & 0x07U);
        else if (value >= 0xE0U)
            result.push_back(value & 0x0FU);
        else if (value >= 0xC0U)
            result.push_back(value & 0x1FU);
        else if (!result.empty())
            result.back() = (result.back() << 6U) | (value & 0x3FU);
    }
    return result;
}

void drawBitmap(Canvas& canvas, int left, int top, const FT_Bitmap& bitmap, const Rgb& colour)
{
    const unsigned char* line = bitmap.buffer;
    for (int y = 0; y < static_cast<int>(bitmap.rows); ++y, line += bitmap.pitch)
        for (int x = 0; x < static_cast<int>(bitmap.width); ++x)
            if (line[x] != 0) canvas.blend(left + x, top + y, colour, line[x] / 255.0);
}

} // namespace

Font::Font(Weight weight, double size) : face_(std::make_unique<Face>(findFont(weight), size)) {}

Font::~Font() = default;

double Font::width(const std::string& text) const
{
    double width = 0.0;
    for (const char32_t letter : letters(text))
        if (face_->load(letter)) width += face_->advance();
    return width;
}

double Font::capitalHeight() const
{
    return face_->load(U'H') ? static_cast<double>(face_->face->glyph->metrics.height) / 64.0 : 0.0;
}

void Font::draw(Canvas& canvas, double x, int baseline, const std::string& text,
                const Rgb& colour) const
{
    const FT_GlyphSlot glyph = face_->face->glyph;
    for (const char32_t letter : letters(text))
    {
        if (!face_->load(letter)) continue;
        const double advance = face_->advance();
        const double left = std::floor(x);
        FT_Outline_Translate(&glyph->outline, std::lround((x - left) * 64.0), 0);
        if (FT_Render_Glyph(glyph, FT_RENDER_MODE_NORMAL) == 0)
            drawBitmap(canvas, static_cast<int>(left) + glyph->bitmap_left,
                       baseline - glyph->bitmap_top, glyph->bitmap, colour);
        x += advance;
    }
}

} // namespace Maps
