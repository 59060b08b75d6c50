#include "tools/console/LineCaret.h"

#include "tools/console/Characters.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace
{
std::size_t before(const std::string &line, std::size_t place)
{
    while (place > 0 && !beginsCharacter(line[--place]))
        ;
    return place;
}

std::size_t after(const std::string &line, std::size_t place)
{
    while (place < line.size() && ++place < line.size() && !beginsCharacter(line[place]))
        ;
    return place;
}

/// Whether a byte belongs to a word; those of characters beyond ASCII do.
bool isOfWord(char byte)
{
    const auto letter = static_cast<unsigned char>(byte);
    return letter >= 0x80u || std::isalnum(letter) || letter == '_';
}

std::string without(const std::string &line, std::size_t begin, std::size_t end)
{
    return line.substr(0, begin) + line.substr(end);
}
} // namespace

std::size_t LineCaret::place(const String &line) const
{
    return line.size() - std::min<std::size_t>(behind, line.size());
}

void LineCaret::left(const String &line)
{
    put(line, before(line.toCString(), place(line)));
}

void LineCaret::right(const String &line)
{
    put(line, after(line.toCString(), place(line)));
}

void LineCaret::wordLeft(const String &line)
{
    const std::string text = line.toCString();
    std::size_t at = place(line);
    while (at > 0 && !isOfWord(text[at - 1]))
        --at;
    while (at > 0 && isOfWord(text[at - 1]))
        --at;
    put(line, at);
}

void LineCaret::wordRight(const String &line)
{
    const std::string text = line.toCString();
    std::size_t at = place(line);
    while (at < text.size() && !isOfWord(text[at]))
        ++at;
    while (at < text.size() && isOfWord(text[at]))
        ++at;
    put(line, at);
}

String LineCaret::typed(const String &line, const String &text) const
{
    std::string all = line.toCString();
    return String::copyFrom(all.insert(place(line), text.toCString()));
}

String LineCaret::erasedBefore(const String &line) const
{
    const std::string text = line.toCString();
    return String::copyFrom(without(text, before(text, place(line)), place(line)));
}

String LineCaret::erasedBehind(const String &line)
{
    const std::string text = line.toCString();
    const std::size_t at = place(line);
    String rest = String::copyFrom(without(text, at, after(text, at)));
    put(rest, at);
    return rest;
}
