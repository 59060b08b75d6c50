// EffectLexer: an effect file as words, marks and blocks of shader code.
#pragma once

#include <string>

namespace port
{

struct Token
{
    enum class Kind
    {
        WORD,   ///< a name
        NUMBER, ///< digits as they stand, sign included
        TEXT,   ///< between double quotes, which are left out
        MARK,   ///< one character
        END
    };
    Kind kind = Kind::END;
    std::string text;
    int line = 1;
};

/// Reads one file's text from front to back. Comments are those of C++.
class EffectLexer
{
public:
    explicit EffectLexer(std::string text) : text(std::move(text)) {}

    Token next();
    /// Takes everything up to the brace that closes the block just opened, and that brace.
    /// @return false if the text ends before it
    bool takeBlock(std::string &block, int &firstLine);

private:
    bool skipComment();
    void skipSpace();
    char peek(std::size_t ahead = 0) const { return position + ahead < text.size() ? text[position + ahead] : '\0'; }
    void advance();

    std::string text;
    std::size_t position = 0;
    int line = 1;
};

} // namespace port
