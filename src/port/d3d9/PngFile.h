// PngFile: pictures written as PNG.
#pragma once

#include <string>

namespace port
{

/// Writes a picture of 8 bits each of red, green and blue, whole or not at all.
///
/// @param designed  a designed path
/// @param top       first byte of the uppermost row
/// @param rowStep   bytes from a row to the one below it; negative where the rows lie bottom up
/// @return why it cannot be written, as a sentence; empty on success
std::string writePngFile(const char *designed, int width, int height, const unsigned char *top, int rowStep);

} // namespace port
