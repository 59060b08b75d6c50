#include "tools/console/TextBuffSystem.h"

#include "tools/console/Characters.h"
#include "tools/console/ConsoleComponent.h"

#include "engine/debug/GlobalConfigSystem.h"
#include "engine/systems/SystemSystem.h"
#include "platform/input/InputSystem.h"
#include "platform/input/TextCapture.h"

#include <algorithm>
#include <iterator>

namespace
{
// Codes of keys as `TextCapture::add` has them.
constexpr unsigned BACKSPACE = 8, TAB = 9, ENTER = 13, FIRST_PRINTABLE = 32, LAST_PRINTABLE = 126, UP = 501, DOWN = 503;

/// Marks a character among the codes of keys.
constexpr unsigned CHARACTER = 0x80000000u;

bool isPrintable(unsigned key)
{
    return (key >= FIRST_PRINTABLE && key <= LAST_PRINTABLE) || (key & CHARACTER);
}

String textOf(unsigned key)
{
    return String::copyFrom(utf8Of(key & ~CHARACTER));
}

/// A key that moves in the line or takes from it, and its token.
struct EditKey
{
    unsigned key;
    String token;
};

const EditKey editKeys[] = {
    {127, SCS("DELETE")}, {500, SCS("LEFT")},     {502, SCS("RIGHT")},     {504, SCS("HOME")},
    {505, SCS("END")},    {506, SCS("WORDLEFT")}, {507, SCS("WORDRIGHT")},
};

const EditKey *editKeyOf(unsigned key)
{
    const auto found =
        std::find_if(std::begin(editKeys), std::end(editKeys), [key](const EditKey &each) { return each.key == key; });
    return found != std::end(editKeys) ? found : nullptr;
}

/// Whether a buffer means something else than its letters.
bool isToken(const String &text)
{
    return text == SCS("UP") || text == SCS("DOWN") || text == SCS("TAB") ||
           std::any_of(std::begin(editKeys), std::end(editKeys),
                       [&text](const EditKey &each) { return each.token == text; });
}
} // namespace

/// What the input system hands typed keys to.
class TextBuffSystem::Keys final : public TextCapture
{
public:
    explicit Keys(TextBuffSystem &system_) : system(system_) { setCurrent(this); }
    ~Keys() override { setCurrent(nullptr); }

    bool wantsText() const override { return system.isCapturing(); }
    void add(unsigned key) override { system.type(key); }
    void addCharacter(char32_t character) override { system.type(static_cast<unsigned>(character) | CHARACTER); }
    bool takesKey(unsigned key, bool repeated) override
    {
        const auto console = ConsoleComponent::ofCurrentLevel().lookup();
        return console && console->takesKey(static_cast<int>(key), repeated);
    }

private:
    TextBuffSystem &system;
};

TextBuffSystem::TextBuffSystem() = default;
TextBuffSystem::~TextBuffSystem() = default;

System::DependencyList TextBuffSystem::systemDependencies()
{
    return {SystemSystem::staticType, GlobalConfigSystem::staticType, InputSystem::staticType};
}

void TextBuffSystem::systemStartup()
{
    keys = std::make_unique<Keys>(*this);
}

void TextBuffSystem::systemShutdown()
{
    keys.reset();
}

void TextBuffSystem::add(unsigned key)
{
    if (key == UP)
        buffer = SCS("UP");
    else if (key == DOWN)
        buffer = SCS("DOWN");
    else if (key == ENTER)
        buffer = SCS("\n");
    else if (key == TAB)
        buffer = buffer + SCS("TAB");
    else if (key == BACKSPACE || isPrintable(key))
        buffer = buffer + textOf(key);
}

/// Takes a key at once where its reader will understand it, and else has it wait.
void TextBuffSystem::type(unsigned key)
{
    if (waiting.empty() && isTakenWhole(key))
        take(key);
    else
        waiting.push_back(key);
}

void TextBuffSystem::take(unsigned key)
{
    if (const EditKey *const edit = editKeyOf(key))
        buffer = edit->token;
    else if (key & CHARACTER)
        buffer = buffer + textOf(key);
    else
        add(key);
}

bool TextBuffSystem::isTakenWhole(unsigned key) const
{
    if (buffer.empty())
        return true;
    const auto last = static_cast<unsigned char>(buffer[buffer.size() - 1]);
    return isPrintable(key) && isPrintable(last) && !isToken(buffer) && !isToken(buffer + textOf(key));
}

bool TextBuffSystem::refill()
{
    const bool any = !waiting.empty();
    while (!waiting.empty() && isTakenWhole(waiting.front()))
    {
        take(waiting.front());
        waiting.pop_front();
    }
    return any;
}

void TextBuffSystem::setOnOff(bool val)
{
    onOff = val;
    followSwitches();
}

bool TextBuffSystem::isCapturing() const
{
    return onOff && getSystemDeref<GlobalConfigSystem>().getConsoleEnabled();
}

void TextBuffSystem::followSwitches()
{
    const bool wanted = isCapturing();
    if (wanted == capturing)
        return;
    capturing = wanted;
    InputSystem &input = getSystemDeref<InputSystem>();
    if (!wanted)
        return input.setNoOp(inputWasDropped);
    inputWasDropped = input.getNoOp();
    input.letGo();
    input.setNoOp(true);
    buffer = String();
    waiting.clear();
}
