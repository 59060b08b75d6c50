#include "platform/input/TextCapture.h"

#include "port/win32/VirtualKeys.h"

namespace
{
TextCapture *currentCapture = nullptr;

constexpr unsigned FIRST_ARROW = 500; ///< beyond every character; the four arrows follow the order of their key codes
constexpr unsigned HOME = 504, END = 505;

struct TypedKey
{
    unsigned key;
    char plain;
    char shifted;
};

constexpr TypedKey punctuation[] = {
    {VK_SPACE, ' ', ' '},     {VK_OEM_1, ';', ':'},      {VK_OEM_PLUS, '=', '+'}, {VK_OEM_COMMA, ',', '<'},
    {VK_OEM_MINUS, '-', '_'}, {VK_OEM_PERIOD, '.', '>'}, {VK_OEM_2, '/', '?'},    {VK_OEM_3, '`', '~'},
    {VK_OEM_4, '[', '{'},     {VK_OEM_5, '\\', '|'},     {VK_OEM_6, ']', '}'},    {VK_OEM_7, '\'', '"'},
    {VK_OEM_102, '\\', '|'},  {VK_MULTIPLY, '*', '*'},   {VK_ADD, '+', '+'},      {VK_SUBTRACT, '-', '-'},
    {VK_DECIMAL, '.', '.'},   {VK_DIVIDE, '/', '/'},
};

constexpr char shiftedDigits[] = ")!@#$%^&*(";

unsigned punctuationCode(unsigned key, bool shift)
{
    for (const TypedKey &entry : punctuation)
        if (entry.key == key)
            return static_cast<unsigned char>(shift ? entry.shifted : entry.plain);
    return 0;
}
} // namespace

TextCapture *TextCapture::current()
{
    return currentCapture;
}

void TextCapture::setCurrent(TextCapture *capture)
{
    currentCapture = capture;
}

unsigned typedCode(unsigned key, bool shift, bool capsLock)
{
    if (key >= 'A' && key <= 'Z')
        return shift != capsLock ? key : key - 'A' + 'a';
    if (key >= '0' && key <= '9')
        return shift ? static_cast<unsigned char>(shiftedDigits[key - '0']) : key;
    if (key >= VK_NUMPAD0 && key <= VK_NUMPAD0 + 9u)
        return key - VK_NUMPAD0 + '0';
    if (key >= VK_LEFT && key <= VK_DOWN)
        return key - VK_LEFT + FIRST_ARROW;
    if (key == VK_HOME || key == VK_END)
        return key == VK_HOME ? HOME : END;
    if (key == VK_BACK || key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE)
        return key;
    constexpr unsigned deleteCharacter = 127;
    return key == VK_DELETE ? deleteCharacter : punctuationCode(key, shift);
}

unsigned withControl(unsigned code)
{
    constexpr unsigned left = 500, right = 502, wordLeft = 506, wordRight = 507;
    if (code == left || code == right)
        return code == left ? wordLeft : wordRight;
    return 0;
}
