#include "port/win32/MessageQueue.h"

#include <algorithm>

namespace port
{

namespace
{
bool matches(const MSG &message, HWND hWnd, UINT first, UINT last)
{
    if (hWnd && message.hwnd != hWnd)
        return false;
    return (first == 0 && last == 0) || (message.message >= first && message.message <= last);
}
} // namespace

void MessageQueue::post(const MSG &message)
{
    waiting.push_back({message, RAWINPUT()});
}

void MessageQueue::postInput(HWND hWnd, const RAWINPUT &record, DWORD time)
{
    MSG message;
    message.hwnd = hWnd;
    message.message = WM_INPUT;
    message.wParam = record.header.wParam;
    message.lParam = static_cast<LPARAM>(++lastHandle);
    message.time = time;
    waiting.push_back({message, record});
}

void MessageQueue::postQuit(int exitCode)
{
    quitCode = exitCode;
}

void MessageQueue::forget(HWND hWnd)
{
    const auto gone = [hWnd](const Entry &entry) { return entry.message.hwnd == hWnd; };
    waiting.erase(std::remove_if(waiting.begin() + head, waiting.end(), gone), waiting.end());
}

std::optional<MSG> MessageQueue::next(HWND hWnd, UINT first, UINT last, bool remove)
{
    for (std::size_t i = head; i < waiting.size(); ++i)
    {
        const MSG message = waiting[i].message;
        if (!matches(message, hWnd, first, last))
            continue;
        if (remove)
            take(i);
        return message;
    }

    MSG quit;
    quit.message = WM_QUIT;
    if (!quitCode || !matches(quit, nullptr, first, last))
        return std::nullopt;
    quit.wParam = static_cast<WPARAM>(*quitCode);
    if (remove)
        quitCode.reset();
    return quit;
}

void MessageQueue::take(std::size_t index)
{
    const Entry &entry = waiting[index];
    if (entry.message.message == WM_INPUT)
    {
        const auto handle = static_cast<std::uintptr_t>(entry.message.lParam);
        taken[handle % KEPT_RECORDS] = entry.record;
        takenHandles[handle % KEPT_RECORDS] = handle;
    }

    if (index == head)
        ++head;
    else
        waiting.erase(waiting.begin() + index);
    if (head == waiting.size())
    {
        waiting.clear();
        head = 0;
    }
}

const RAWINPUT *MessageQueue::rawInput(HRAWINPUT handle) const
{
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    if (number == 0)
        return nullptr;
    if (takenHandles[number % KEPT_RECORDS] == number)
        return &taken[number % KEPT_RECORDS];
    for (std::size_t i = head; i < waiting.size(); ++i)
        if (waiting[i].message.message == WM_INPUT && waiting[i].message.lParam == static_cast<LPARAM>(number))
            return &waiting[i].record;
    return nullptr;
}

} // namespace port
