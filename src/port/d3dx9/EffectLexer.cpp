#include "port/d3dx9/EffectLexer.h"

#include <cctype>

namespace
{

bool isWordStart(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_';
}

bool isDigit(char c)
{
    return std::isdigit(static_cast<unsigned char>(c));
}

bool isWordPart(char c)
{
    return isWordStart(c) || isDigit(c);
}

} // namespace

namespace port
{

void EffectLexer::advance()
{
    if (peek() == '\n')
        ++line;
    ++position;
}

bool EffectLexer::skipComment()
{
    if (peek() != '/')
        return false;
    if (peek(1) == '/')
    {
        while (position < text.size() && peek() != '\n')
            advance();
        return true;
    }
    if (peek(1) != '*')
        return false;
    const std::size_t end = text.find("*/", position + 2);
    const std::size_t stop = end == std::string::npos ? text.size() : end + 2;
    while (position < stop)
        advance();
    return true;
}

void EffectLexer::skipSpace()
{
    while (position < text.size())
    {
        if (std::isspace(static_cast<unsigned char>(peek())))
            advance();
        else if (!skipComment())
            return;
    }
}

Token EffectLexer::next()
{
    skipSpace();
    Token token;
    token.line = line;
    if (position >= text.size())
        return token;

    const char first = peek();
    const bool negative = first == '-' && (isDigit(peek(1)) || peek(1) == '.');
    if (isWordStart(first))
    {
        token.kind = Token::Kind::WORD;
        for (; isWordPart(peek()); advance())
            token.text += peek();
    }
    else if (isDigit(first) || negative || (first == '.' && isDigit(peek(1))))
    {
        token.kind = Token::Kind::NUMBER;
        do
        {
            token.text += peek();
            advance();
        } while (isWordPart(peek()) || peek() == '.');
    }
    else if (first == '"')
    {
        token.kind = Token::Kind::TEXT;
        for (advance(); position < text.size() && peek() != '"' && peek() != '\n'; advance())
            token.text += peek();
        advance();
    }
    else
    {
        token.kind = Token::Kind::MARK;
        token.text = first;
        advance();
    }
    return token;
}

bool EffectLexer::takeBlock(std::string &block, int &firstLine)
{
    firstLine = line;
    const std::size_t start = position;
    for (int depth = 1; position < text.size();)
    {
        if (skipComment())
            continue;
        if (peek() == '{')
            ++depth;
        else if (peek() == '}' && --depth == 0)
        {
            block = text.substr(start, position - start);
            advance();
            return true;
        }
        advance();
    }
    return false;
}

} // namespace port
