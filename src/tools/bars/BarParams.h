// BarParams: what is said of a bar, or of a line of it, by the names that the bars' library has for that.
#pragma once

#include "foundation/KVString.h"

class TwBar;

/// Calls of `TwSetParam` and `TwGetParam` with their types. A null for the line means the bar.
namespace BarParams
{
void setText(TwBar *bar, const char *line, const char *parameter, const String &text);
/// A number of lines, or a switch.
void setNumber(TwBar *bar, const char *line, const char *parameter, int value);
/// @param place  left, top, width and height, pixels
void setPlace(TwBar *bar, const int *place);
/// The size of one that has no place yet, for letters of the usual height.
void setSize(TwBar *bar, int width, int height);

/// Whether a bar is among those that are shown; false once the user has closed it.
bool isVisible(TwBar *bar);

/// Whether two numbers can bound a value; if not, an error that names the line is logged.
bool isRange(const char *caller, const String &line, double least, double most);
/// Bounds a number, which becomes a slider.
/// @return whether there is such a line
bool setRange(TwBar *bar, const char *line, double least, double most);
} // namespace BarParams
