// BarRenderer: draws what Dear ImGui laid out, with OpenGL.
#pragma once

struct ImDrawData;
struct ImDrawList;

namespace port
{

/// Owns the program, buffers and font texture in the device's context, made when they are first needed.
class BarRenderer
{
public:
    /// Draws into the bound framebuffer; leaves the library's state changed.
    void draw(const ImDrawData &data, int drawableWidth, int drawableHeight);
    /// Deletes everything; the device's context must still be there.
    void release();
    /// Lets go of the font's letters, which are others now.
    void dropFont();

private:
    void create();
    void makeFontTexture();
    void setState(const ImDrawData &data, int drawableWidth, int drawableHeight);
    void drawList(const ImDrawList &list, const ImDrawData &data, int drawableHeight);

    unsigned program = 0; ///< 0: nothing is made yet
    unsigned vertexArray = 0;
    unsigned vertices = 0;
    unsigned indices = 0;
    unsigned fontTexture = 0;
};

} // namespace port
