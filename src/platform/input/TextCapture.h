// TextCapture: where typed text goes while something on screen is being typed into.
#pragma once

/// Takes the keys of a text entry as they are typed, repeats of a held key included. The console installs one.
class TextCapture
{
public:
    virtual ~TextCapture() = default;

    /// Whether text is being entered now.
    virtual bool wantsText() const = 0;
    /// Takes a key before it types anything, as one that closes the entry; what it takes is not typed.
    /// @param key       virtual-key code
    /// @param repeated  the key was down already
    virtual bool takesKey(unsigned key, bool repeated) { return false; }
    /// Takes one key: a printable character (32 to 126), 8 backspace, 9 tab, 13 enter, 27 escape, 127 delete, 500 to
    /// 503 for the arrows left, up, right, down, 504 home, 505 end, 506 and 507 for left and right with control.
    virtual void add(unsigned key) = 0;
    /// Takes one character of a text as the keyboard's layout gives it; what `add` does not know falls away by default.
    /// @param character  number of Unicode, 32 or above
    virtual void addCharacter(char32_t character)
    {
        if (character < 127)
            add(character);
    }

    /// The installed capture; null while there is none.
    static TextCapture *current();
    /// Installs a capture, or takes it out with null; borrowed.
    static void setCurrent(TextCapture *capture);
};

/// The code that TextCapture::add takes for a key of a US keyboard; 0 for one that types nothing.
/// @param key  virtual-key code
unsigned typedCode(unsigned key, bool shift, bool capsLock);

/// What a code of TextCapture::add becomes while control is held; 0 for nothing.
unsigned withControl(unsigned code);

/// Whether a code of TextCapture::add is a character rather than a key that edits.
constexpr bool isTypedCharacter(unsigned code)
{
    return code >= 32 && code < 127;
}
