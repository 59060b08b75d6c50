// TextGeometry: laid-out texts as quads that show their glyphs.
#pragma once

#include "assets/models/Mesh.h"
#include "assets/fonts/TextBlock.h"

#include "foundation/Vector.h"

class FontAsset;

/// The vertices of any number of texts in one font.
///
/// Positions are in pixels, x to the right and y up, so that a whole number is the edge between two pixels; z is 0.
/// The normal of a vertex is its colour and the x of its tangent its alpha, which is what "CrappyTexturedQuads" reads.
class TextGeometry
{
public:
    /// Forgets all texts; the lists keep their memory.
    void clear();

    /// Adds a text; one whose place is no finite number adds nothing.
    ///
    /// @param pixelSize  em that the text was laid out for
    /// @param left, top  upper left corner of the block; letters keep their spacing, pictures stand on whole pixels
    /// @param color      0 to 1, alpha in w; negative components count as 0
    void addText(const TextBlock &block, FontAsset &font, int pixelSize, float left, float top, const Vec4 &color);

    const Mesh::VertexBufferType &getVertices() const { return vertices; }
    const Mesh::IndexBufferType &getIndices() const { return indices; }
    bool isEmpty() const { return vertices.empty(); }

private:
    struct Rectangle
    {
        float left, top, right, bottom;
    };
    void addGlyph(const TextBlock::Glyph &placed, FontAsset &font, int pixelSize, float penX, float penY,
                  const Vec4 &tint);
    void addQuad(const Rectangle &place, const Rectangle &image, const Vec4 &color);

    Mesh::VertexBufferType vertices;
    Mesh::IndexBufferType indices;
};
