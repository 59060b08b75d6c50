#include "port/tweakbar/BarRenderer.h"

#include <cstddef>
#include <cstdint>
#include <epoxy/gl.h>
#include <imgui/imgui.h>
#include <initializer_list>

namespace port
{

namespace
{
constexpr const char *vertexSource = R"(#version 450 core
layout(location = 0) in vec2 position;
layout(location = 1) in vec2 uv;
layout(location = 2) in vec4 color;
layout(location = 0) uniform vec4 toClip;
out vec2 texturePlace;
out vec4 tint;
void main()
{
    texturePlace = uv;
    tint = color;
    gl_Position = vec4(position * toClip.xy + toClip.zw, 0.0, 1.0);
})";

constexpr const char *fragmentSource = R"(#version 450 core
layout(binding = 0) uniform sampler2D picture;
in vec2 texturePlace;
in vec4 tint;
layout(location = 0) out vec4 result;
void main()
{
    result = tint * texture(picture, texturePlace);
})";

GLuint compile(GLenum kind, const char *source)
{
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

GLuint link()
{
    const GLuint program = glCreateProgram();
    for (const GLuint shader : {compile(GL_VERTEX_SHADER, vertexSource), compile(GL_FRAGMENT_SHADER, fragmentSource)})
    {
        glAttachShader(program, shader);
        glDeleteShader(shader); // goes with the program
    }
    glLinkProgram(program);
    return program;
}

void describe(GLuint vertexArray, GLuint location, GLint components, GLenum type, bool normalized, std::size_t offset)
{
    glEnableVertexArrayAttrib(vertexArray, location);
    glVertexArrayAttribFormat(vertexArray, location, components, type, normalized, static_cast<GLuint>(offset));
    glVertexArrayAttribBinding(vertexArray, location, 0);
}
} // namespace

void BarRenderer::create()
{
    program = link();
    glCreateBuffers(1, &vertices);
    glCreateBuffers(1, &indices);
    glCreateVertexArrays(1, &vertexArray);
    describe(vertexArray, 0, 2, GL_FLOAT, false, offsetof(ImDrawVert, pos));
    describe(vertexArray, 1, 2, GL_FLOAT, false, offsetof(ImDrawVert, uv));
    describe(vertexArray, 2, 4, GL_UNSIGNED_BYTE, true, offsetof(ImDrawVert, col));
    glVertexArrayVertexBuffer(vertexArray, 0, vertices, 0, sizeof(ImDrawVert));
    glVertexArrayElementBuffer(vertexArray, indices);
}

void BarRenderer::makeFontTexture()
{
    unsigned char *pixels = nullptr;
    int width = 0, height = 0;
    ImGui::GetIO().Fonts->GetTexDataAsAlpha8(&pixels, &width, &height);
    glCreateTextures(GL_TEXTURE_2D, 1, &fontTexture);
    glTextureStorage2D(fontTexture, 1, GL_R8, width, height);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glTextureSubImage2D(fontTexture, 0, 0, 0, width, height, GL_RED, GL_UNSIGNED_BYTE, pixels);
    glTextureParameteri(fontTexture, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTextureParameteri(fontTexture, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    constexpr GLint coverage[] = {GL_ONE, GL_ONE, GL_ONE, GL_RED};
    glTextureParameteriv(fontTexture, GL_TEXTURE_SWIZZLE_RGBA, coverage);
}

void BarRenderer::release()
{
    if (program == 0)
        return;
    glDeleteProgram(program);
    glDeleteVertexArrays(1, &vertexArray);
    glDeleteBuffers(1, &vertices);
    glDeleteBuffers(1, &indices);
    program = 0;
    dropFont();
}

void BarRenderer::dropFont()
{
    if (fontTexture != 0)
        glDeleteTextures(1, &fontTexture);
    fontTexture = 0;
}

void BarRenderer::draw(const ImDrawData &data, int drawableWidth, int drawableHeight)
{
    if (drawableWidth <= 0 || drawableHeight <= 0)
        return;
    if (program == 0)
        create();
    if (fontTexture == 0)
        makeFontTexture();
    setState(data, drawableWidth, drawableHeight);
    for (int i = 0; i < data.CmdListsCount; ++i)
        drawList(*data.CmdLists[i], data, drawableHeight);
    glDisable(GL_SCISSOR_TEST);
}

void BarRenderer::setState(const ImDrawData &data, int drawableWidth, int drawableHeight)
{
    for (const GLenum off : {GL_CULL_FACE, GL_DEPTH_TEST, GL_STENCIL_TEST, GL_FRAMEBUFFER_SRGB, GL_RASTERIZER_DISCARD})
        glDisable(off);
    glEnable(GL_SCISSOR_TEST);
    glEnable(GL_BLEND);
    glBlendEquation(GL_FUNC_ADD);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glViewport(0, 0, drawableWidth, drawableHeight);
    glUseProgram(program);
    // The window's pixels count from the top, clip space from the bottom.
    glUniform4f(0, 2.0f / data.DisplaySize.x, -2.0f / data.DisplaySize.y, -1.0f, 1.0f);
    glBindSampler(0, 0);
    glBindVertexArray(vertexArray);
}

void BarRenderer::drawList(const ImDrawList &list, const ImDrawData &data, int drawableHeight)
{
    glNamedBufferData(vertices, static_cast<GLsizeiptr>(list.VtxBuffer.size_in_bytes()), list.VtxBuffer.Data,
                      GL_STREAM_DRAW);
    glNamedBufferData(indices, static_cast<GLsizeiptr>(list.IdxBuffer.size_in_bytes()), list.IdxBuffer.Data,
                      GL_STREAM_DRAW);
    // A window with more pixels than units: the layout is in units.
    const float scale = static_cast<float>(drawableHeight) / data.DisplaySize.y;
    constexpr GLenum indexType = sizeof(ImDrawIdx) == 2 ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT;
    for (const ImDrawCmd &command : list.CmdBuffer)
    {
        const ImVec4 &clip = command.ClipRect;
        if (clip.z <= clip.x || clip.w <= clip.y)
            continue;
        glScissor(static_cast<GLint>(clip.x * scale), drawableHeight - static_cast<GLint>(clip.w * scale),
                  static_cast<GLsizei>((clip.z - clip.x) * scale), static_cast<GLsizei>((clip.w - clip.y) * scale));
        const auto picture = static_cast<GLuint>(reinterpret_cast<std::uintptr_t>(command.GetTexID()));
        glBindTextureUnit(0, picture ? picture : fontTexture);
        glDrawElementsBaseVertex(GL_TRIANGLES, static_cast<GLsizei>(command.ElemCount), indexType,
                                 reinterpret_cast<const void *>(command.IdxOffset * sizeof(ImDrawIdx)),
                                 static_cast<GLint>(command.VtxOffset));
    }
}

} // namespace port
