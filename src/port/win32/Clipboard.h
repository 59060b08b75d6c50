// Clipboard: text that is copied to other programs, and back.
#pragma once

#include <string>

namespace port
{

/// Puts a text in UTF-8 on the clipboard; without a display it is kept for this process alone.
void setClipboardText(const std::string &text);

/// The clipboard's text in UTF-8; empty where it has none.
std::string clipboardText();

} // namespace port
