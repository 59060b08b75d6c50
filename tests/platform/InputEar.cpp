#include "platform/InputEar.h"

#include "object/messages/PostOffice.h"
#include "platform/input/InputMessages.h"

namespace
{
template <class... Values>
std::string line(const ReflectorPtr &messageType, const char *format, Values... values)
{
    const String payload = String::format(format, values...);
    return std::string(messageType->getName().toCString()) + " " + payload.toCString();
}
} // namespace

void InputEar::listen()
{
    const auto hear = [this](const ReflectorPtr &type, const char *method)
    { PostOffice().registerMessageHandler(type, bind(String::copyFrom(method))); };
    hear(KeyDownMessage, "handleKeyMessage");
    hear(KeyUpMessage, "handleKeyMessage");
    hear(MouseDownMessage, "handleClickMessage");
    hear(MouseUpMessage, "handleClickMessage");
    hear(MouseWheelMessage, "handleWheelMessage");
    hear(MouseMove, "handleMotionMessage");
    hear(MousePos, "handleClickMessage");
    hear(ButtonPressed, "handleButtonMessage");
    hear(LeftJoyPos, "handleStickMessage");
    hear(RightJoyPos, "handleStickMessage");
    hear(LeftTriggerPos, "handleTriggerMessage");
    hear(RightTriggerPos, "handleTriggerMessage");
}

void InputEar::handleKeyMessage(const ReflectorPtr &messageType, int key)
{
    heard.push_back(line(messageType, "%d", key));
}

void InputEar::handleClickMessage(const ReflectorPtr &messageType, unsigned click, float x, float y)
{
    heard.push_back(line(messageType, "%u %.3f %.3f", click, double(x), double(y)));
}

void InputEar::handleWheelMessage(const ReflectorPtr &messageType, int direction, float x, float y)
{
    heard.push_back(line(messageType, "%d %.3f %.3f", direction, double(x), double(y)));
}

void InputEar::handleMotionMessage(const ReflectorPtr &messageType, float x, float y)
{
    heard.push_back(line(messageType, "%.3f %.3f", double(x), double(y)));
}

void InputEar::handleButtonMessage(const ReflectorPtr &messageType, int button, unsigned player)
{
    heard.push_back(line(messageType, "%#x %u", unsigned(button), player));
}

void InputEar::handleStickMessage(const ReflectorPtr &messageType, float x, float y, unsigned player)
{
    heard.push_back(line(messageType, "%.3f %.3f %u", double(x), double(y), player));
}

void InputEar::handleTriggerMessage(const ReflectorPtr &messageType, float position, unsigned player)
{
    heard.push_back(line(messageType, "%.3f %u", double(position), player));
}
