// LineCaret: where in a line what is typed goes.
#pragma once

#include "foundation/KVString.h"

#include <cstddef>

/// A place in a line that is edited, between two of its characters.
///
/// It is kept by what stands behind it, so that it stays at the end of a line that grows or is exchanged; in a line that
/// has become shorter than that it stands at the beginning. Lines are UTF-8. Owns no line.
class LineCaret
{
public:
    void toEnd() { behind = 0; }
    void toBegin(const String &line) { behind = line.size(); }
    void left(const String &line);
    void right(const String &line);
    /// Goes to the beginning of a word, over the blanks and marks before it.
    void wordLeft(const String &line);
    /// Goes behind the end of a word.
    void wordRight(const String &line);

    /// The line with a text before the caret.
    String typed(const String &line, const String &text) const;
    /// The line without the character before the caret.
    String erasedBefore(const String &line) const;
    /// The line without the character behind the caret, which the caret stays before.
    String erasedBehind(const String &line);

    /// Bytes of the line before the caret.
    std::size_t place(const String &line) const;

private:
    void put(const String &line, std::size_t place) { behind = line.size() - place; }

    std::size_t behind = 0; ///< bytes of the line
};
