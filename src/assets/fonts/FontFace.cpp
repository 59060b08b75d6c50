#include "assets/fonts/FontFace.h"

#include "foundation/Utf8.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <hb.h>

#include <cstring>
#include <utility>

/// The libraries' own objects: one draws glyphs, the other chooses and places them.
struct FontFace::Library
{
    FT_Library handle = nullptr;
    FT_Face face = nullptr;
    int pixelSize = 0; ///< size that the face is set to
    hb_font_t *shaper = nullptr;
    hb_buffer_t *run = nullptr; ///< kept for the next run

    ~Library()
    {
        hb_buffer_destroy(run);
        hb_font_destroy(shaper);
        if (face)
            FT_Done_Face(face);
        if (handle)
            FT_Done_FreeType(handle);
    }
};

FontFace::FontFace() = default;
FontFace::~FontFace() = default;

String FontFace::load(std::vector<std::uint8_t> fileContents)
{
    contents = std::move(fileContents);
    library = std::make_unique<Library>();
    if (FT_Init_FreeType(&library->handle) != FT_Err_Ok)
        return SCS("The font library does not start.");
    const FT_Error result =
        FT_New_Memory_Face(library->handle, contents.data(), static_cast<FT_Long>(contents.size()), 0, &library->face);
    if (result != FT_Err_Ok)
        return String::format("It is no font file of a known kind, or damaged (error %i of the font library).",
                              static_cast<int>(result));
    String unusable = chooseCharacters();
    if (unusable.empty())
        unusable = prepareShaping();
    if (!unusable.empty())
        return unusable;

    const auto units = static_cast<float>(library->face->units_per_EM);
    ascent = static_cast<float>(library->face->ascender) / units;
    lineHeight = static_cast<float>(library->face->height) / units;
    replacementGlyph = findReplacement();
    return String();
}

/// @return empty, or why this face cannot be used
String FontFace::chooseCharacters()
{
    if (!FT_IS_SCALABLE(library->face) || library->face->units_per_EM == 0)
        return SCS("It holds no outlines, only pictures of fixed sizes.");
    if (FT_Select_Charmap(library->face, FT_ENCODING_UNICODE) != FT_Err_Ok)
        return SCS("It does not say which glyph belongs to which character.");
    return String();
}

/// @return empty, or why this face cannot be used
String FontFace::prepareShaping()
{
    hb_blob_t *const file =
        hb_blob_create(reinterpret_cast<const char *>(contents.data()), static_cast<unsigned>(contents.size()),
                       HB_MEMORY_MODE_READONLY, nullptr, nullptr);
    hb_face_t *const tables = hb_face_create(file, 0);
    library->shaper = hb_font_create(tables);
    library->run = hb_buffer_create();
    const unsigned glyphs = hb_face_get_glyph_count(tables), unitsPerEm = hb_face_get_upem(tables);
    hb_face_destroy(tables);
    hb_blob_destroy(file);
    if (glyphs == 0 || unitsPerEm == 0)
        return SCS("It has no OpenType tables to place letters by.");
    emsPerUnit = 1.0f / static_cast<float>(unitsPerEm);
    return String();
}

unsigned FontFace::findReplacement()
{
    const unsigned replacement = FT_Get_Char_Index(library->face, REPLACEMENT_CHARACTER);
    if (replacement != 0)
        return replacement;
    // Glyph 0 is a box as a rule; in fonts where it is blank, a missing character would go unnoticed.
    Picture picture;
    rasterize(0, 32, 0.0f, picture);
    return picture.width == 0 ? FT_Get_Char_Index(library->face, U'?') : 0;
}

bool FontFace::has(char32_t character) const
{
    return FT_Get_Char_Index(library->face, character) != 0;
}

void FontFace::shape(std::u32string_view run, float size, std::vector<ShapedGlyph> &glyphs) const
{
    hb_buffer_t *const buffer = library->run;
    hb_buffer_clear_contents(buffer);
    hb_buffer_set_not_found_glyph(buffer, replacementGlyph);
    hb_buffer_set_flags(buffer, HB_BUFFER_FLAG_REMOVE_DEFAULT_IGNORABLES);
    const int length = static_cast<int>(run.size());
    hb_buffer_add_utf32(buffer, reinterpret_cast<const std::uint32_t *>(run.data()), length, 0, length);
    hb_buffer_set_direction(buffer, HB_DIRECTION_LTR);
    hb_buffer_set_language(buffer, hb_language_from_string("und", -1)); // else the user's locale would choose glyphs
    hb_buffer_guess_segment_properties(buffer);
    hb_shape(library->shaper, buffer, nullptr, 0);

    unsigned count = 0;
    const hb_glyph_info_t *const infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t *const places = hb_buffer_get_glyph_positions(buffer, &count);
    const float scale = size * emsPerUnit;
    for (unsigned i = 0; i < count; ++i)
        glyphs.push_back({infos[i].codepoint, infos[i].cluster, static_cast<float>(places[i].x_advance) * scale,
                          static_cast<float>(places[i].x_offset) * scale,
                          static_cast<float>(places[i].y_offset) * scale});
}

void FontFace::rasterize(unsigned glyph, int pixelSize, float shift, Picture &picture)
{
    picture.width = picture.height = 0;
    picture.rows.clear();
    const FT_Face face = library->face;
    if (library->pixelSize != pixelSize && FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(pixelSize)) != FT_Err_Ok)
        return;
    library->pixelSize = pixelSize;
    if (FT_Load_Glyph(face, glyph, FT_LOAD_TARGET_LIGHT | FT_LOAD_NO_BITMAP) != FT_Err_Ok ||
        face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return;
    FT_Outline_Translate(&face->glyph->outline, static_cast<FT_Pos>(shift * 64.0f), 0);
    if (FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL) != FT_Err_Ok)
        return;

    const FT_Bitmap &bitmap = face->glyph->bitmap;
    picture.left = face->glyph->bitmap_left;
    picture.top = face->glyph->bitmap_top;
    picture.width = static_cast<int>(bitmap.width);
    picture.height = static_cast<int>(bitmap.rows);
    picture.rows.resize(static_cast<std::size_t>(bitmap.width) * bitmap.rows);
    for (unsigned y = 0; y < bitmap.rows; ++y)
        std::memcpy(picture.rows.data() + static_cast<std::size_t>(y) * bitmap.width,
                    bitmap.buffer + static_cast<std::ptrdiff_t>(y) * bitmap.pitch, bitmap.width);
}
