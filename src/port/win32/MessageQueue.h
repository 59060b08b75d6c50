// MessageQueue: messages that wait for the loop, with the raw input records behind them.
#pragma once

#include "port/win32/Messages.h"
#include "port/win32/RawInput.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace port
{

/// The thread's messages in the order of their arrival, and the quit message after the last of them.
///
/// Grows as needed and keeps its memory, so that a steady stream allocates nothing.
class MessageQueue
{
public:
    void post(const MSG &message);
    /// Queues a WM_INPUT message for a window; its lParam names the record.
    void postInput(HWND hWnd, const RAWINPUT &record, DWORD time);
    /// Makes WM_QUIT appear when nothing else is left; a later value replaces an earlier one.
    void postQuit(int exitCode);
    /// Drops what waits for a window that has gone.
    void forget(HWND hWnd);

    /// The first message that matches; both bounds 0 mean any kind, a null window any window.
    std::optional<MSG> next(HWND hWnd, UINT first, UINT last, bool remove);

    /// The record of a WM_INPUT message that waits or was taken lately; null for any other handle.
    const RAWINPUT *rawInput(HRAWINPUT handle) const;

    /// Whether a message waits, the quit message included.
    bool empty() const { return head == waiting.size() && !quitCode; }

private:
    struct Entry
    {
        MSG message;
        RAWINPUT record; ///< of WM_INPUT only
    };

    static constexpr std::size_t KEPT_RECORDS = 16; ///< records that outlive their message's removal

    void take(std::size_t index);

    std::vector<Entry> waiting; ///< those before `head` were taken
    std::size_t head = 0;
    std::optional<int> quitCode;
    std::uintptr_t lastHandle = 0; ///< number of the last record; 0 names none
    std::array<RAWINPUT, KEPT_RECORDS> taken{};
    std::array<std::uintptr_t, KEPT_RECORDS> takenHandles{}; ///< 0: empty place
};

} // namespace port
