// WindowSystem2: the game's one window, its mode, its coordinates, and the hold on the mouse cursor.
#pragma once

#include "platform/window/PlayedWindow.h"

#include "engine/systems/System.h"
#include "engine/screen/WindowCoordinate.h"

#include "foundation/ErrorCode.h"
#include "foundation/TimeTypes.h"
#include "port/win32/WinTypes.h"

#include <functional>
#include <optional>

/// Owns the game's window from the start of the system to its shutdown.
///
/// The authority on window coordinates, in which all screen-space layout is expressed: it publishes the client size to
/// the layers below it. Lengths are in pixels. Closing the window ends the game with exit code 0.
class WindowSystem2 : public System
{
    KV_REFLECTED(WindowSystem2)
public:
    enum CursorMode
    {
        CURSOR_RELATIVE = 0, ///< hidden and kept at the window's centre; the mouse tells motion
        CURSOR_ABSOLUTE = 1  ///< free; the mouse tells a place
    };

    WindowSystem2() = default;

    HWND getWindowHandle() const { return hWnd; }
    /// Width of the client area, pixels.
    int getWidth() const { return curWidth; }
    /// Height of the client area, pixels.
    int getHeight() const { return curHeight; }
    bool getFullScreen() const { return fullScreen; }
    /// Takes the whole display, or gives it back.
    void setFullScreen(bool val);
    bool getBorderless() const { return borderless; }
    /// Covers a monitor without a frame and in the desktop's own mode, or not any more; full screen goes before it.
    void setBorderless(bool val);
    int getMonitor() const { return monitor; }
    /// Which monitor the window stands on, from 0; where there are not as many, the first one.
    void setMonitor(int val);
    /// Monitors that there are now, 1 off-screen.
    int getNumMonitors() const;
    /// Refresh rate of the selected mode, hertz.
    int getSelectedRefreshRate() const { return refreshRate; }

    /// Index of the selected mode in the list of GraphicsAdapterSystem; 0, the best, by default.
    int getDisplayMode() const { return displayMode; }
    /// Selects a mode, for the window as it stands or as it will be made; a bad index is reported and changes nothing.
    void setDisplayMode(int val);
    /// Gives the window a size of its own while it does not take the whole display; 0 and 0 mean the mode's size.
    ///
    /// It becomes no larger than the desktop has room for, frame and panels counted; off-screen there is always room.
    /// A window that starts without a size takes 1280 x 720 of a larger desktop.
    void setWindowedSize(int width, int height);

    /// Has the window stay that somebody is just closing; for those who hear WindowCloseMessage.
    void refuseToClose() { closeRefused = true; }

    bool getResizable() const { return resizable; }
    /// Whether the user may resize and maximise the window, by default so.
    void setResizable(bool val);
    /// Whether the user has put the window away, so that nobody sees it.
    bool getMinimised() const { return minimised; }
    /// Whether the window is in front and has the keyboard.
    bool getActive() const { return windowActive; }

    CursorMode getCursorMode() const { return currentCursorMode; }
    /// Holds the cursor at the window's centre, or puts it back where it was and lets it go.
    void setCursorMode(CursorMode val);

    bool getPointerShown() const { return pointerShown; }
    /// Whether the cursor is seen while it is free; at first it is not.
    void setPointerShown(bool val);

    /// The coordinate in the target systems for the window as it is now; see WindowCoordinate::convert.
    WindowCoordinate convertWindowCoordinate(const WindowCoordinate &in, WindowCoordinateSystem xTarget,
                                             WindowCoordinateSystem yTarget) const;

    /// Has somebody told of every change of the window's size, after it; none with an empty function.
    ///
    /// One listener, for the device whose picture has to follow; it takes itself out before it goes.
    void setSizeListener(std::function<void()> listener) { sizeListener = std::move(listener); }

    /// Has the window count as one of this size, whatever size it has on the screen, and hear nothing of its user; 0 and
    /// 0 take that back.
    ///
    /// For a run that is played again: what becomes of the size and the focus comes from the recording.
    void setPlayedSize(int width, int height);
    /// Whether the window counts as one of another size.
    bool getPlaysSize() const { return playedSizes.has_value(); }
    /// Notes what becomes of the size in this frame: at the game's next change of it, or in the frame step where the
    /// user made it.
    void playSize(int width, int height, bool byUser);
    /// Puts a size in force that the last frame had and this run's game did not ask for.
    void catchUpWithPlayedSize();
    /// Has somebody told of what a recording needs of the window; null for nobody. Borrowed.
    void setWitness(WindowWitness *val) { witness = val; }

    /// Puts a held cursor back to the window's centre while the window is in front. Frame step.
    void constrainCursorIfNeeded();
    /// Takes over the size that the user gave the window since the last frame. Frame step.
    ///
    /// Once a frame, however often it changed meanwhile; a size that has come to rest is told by WindowSizeMessage.
    void followSize();

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    static LRESULT CALLBACK forwardingWndProc(HWND window, UINT uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT wndProc(UINT uMsg, WPARAM wParam, LPARAM lParam);

    ErrorCode createWindow();
    ErrorCode registerWindowClass();
    void updateWindow(int width, int height);
    void startWithUsualSize();
    bool isBare() const { return fullScreen || borderless; }
    POINT placeOf(const RECT &rect) const;
    DWORD windowedStyle() const;
    void setActive(bool active);
    void tellFocus(bool active);
    void followPlayedSize();
    void noteSize(WPARAM kind);
    void tellSizeAtRest();
    void takeClientSize(int width, int height);
    void putInForce(int width, int height);
    void publishMetrics() const;
    void showCursor(bool show);
    void reportOnce(bool &reported, bool succeeded, const char *text);

    HWND hWnd = nullptr;
    ATOM windowClass = 0;
    int curWidth = 0;                ///< pixels
    int curHeight = 0;               ///< pixels
    float normalizationFactor = 1.f; ///< pixels of one normalised unit: the larger of width and height
    int refreshRate = 0;             ///< hertz
    bool fullScreen = false;
    bool borderless = false;
    int monitor = 0;     ///< by number, as the player chose it; there may be fewer
    int displayMode = 0; ///< index into the mode list
    CursorMode currentCursorMode = CURSOR_ABSOLUTE;
    POINT lastUnconstrainedCursorPos{0, 0}; ///< screen pixels
    HCURSOR hArrowCursor = nullptr;
    bool windowActive = false;
    bool closeRefused = false; ///< of the last who wanted to close it
    bool resizable = true;
    bool minimised = false;
    bool maximised = false;
    bool sizeIsNews = false;       ///< the host has told of a size since the last frame
    bool sizeIsUntold = false;     ///< the user has resized, and the message is still to be sent
    TimerTicks lastSizeChange = 0; ///< of the time source

    int windowedWidth = 0;  ///< pixels; 0: the mode's
    int windowedHeight = 0; ///< pixels; 0: the mode's
    bool cursorShown = true;
    bool pointerShown = false;              ///< wanted while the cursor is free
    bool centreReported = false;            ///< the cursor could not be held lately, and the log says so
    bool placeReported = false;             ///< the window's place could not be had lately, and the log says so
    std::function<void()> sizeListener;     ///< may be empty
    WindowWitness *witness = nullptr;       ///< may be null
    std::optional<PlayedSizes> playedSizes; ///< while the window counts as one of another size
    static Handle<WindowSystem2>
        instance; ///< from the beginning of its start on, which is before others can ask for it
};
