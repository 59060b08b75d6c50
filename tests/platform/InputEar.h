// InputEar: an object that hears every message of the input.
#pragma once

#include "object/tree/Object.h"

#include <string>
#include <vector>

/// Notes each message as a line: its name and its payload.
class InputEar : public Object
{
    KV_REFLECTED(InputEar)
public:
    InputEar() = default;

    /// Registers at the post office for all messages of input.
    void listen();

    void handleKeyMessage(const ReflectorPtr &messageType, int key);
    void handleClickMessage(const ReflectorPtr &messageType, unsigned click, float x, float y);
    void handleWheelMessage(const ReflectorPtr &messageType, int direction, float x, float y);
    void handleMotionMessage(const ReflectorPtr &messageType, float x, float y);
    void handleButtonMessage(const ReflectorPtr &messageType, int button, unsigned player);
    void handleStickMessage(const ReflectorPtr &messageType, float x, float y, unsigned player);
    void handleTriggerMessage(const ReflectorPtr &messageType, float position, unsigned player);

    std::vector<std::string> heard;
};
