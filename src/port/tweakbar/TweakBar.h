// TweakBar: the library of the debug bars, as the engine calls it.
//
// The entry points carry their published names. Of the calls that fill a bar only those in use are declared; options
// are set by TwSetParam alone, links and lists are our own. A call that fails gives 0 or null, and says why in the debug
// output. Main thread only.
#pragma once

#include "port/win32/WinTypes.h"

#include <cstdint>

enum TwGraphAPI
{
    TW_OPENGL = 1,
    TW_DIRECT3D9 = 2
};

/// Brings the bars up for a device; 1, or 0 where they cannot be.
int TwInit(TwGraphAPI graphAPI, void *device);
/// Tells the size to lay the bars out in, pixels; 0 and 0 mean that the device is lost.
int TwWindowSize(int width, int height);
/// Lays all bars out, calls back for their values, and has the next Present draw them; 1, or 0 on failure.
int TwDraw();
/// Tells that the bars are not drawn any more: until the next TwDraw they hear no message.
int TwHide();
/// Shows the bars a window message.
/// @return 1 where a bar consumed it and nobody else should see it
int TwEventWin(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam);
/// Takes the bars down, before their device goes; what is on them stays and shows again after the next TwInit.
int TwTerminate();

/// A bar: a window with one line a variable.
class TwBar;

/// What a variable is; what its callbacks point at follows from that. Enums stand behind, see TwDefineEnum.
enum TwType : int
{
    TW_TYPE_BOOLCPP,   ///< bool
    TW_TYPE_INT64,     ///< std::int64_t
    TW_TYPE_DOUBLE,    ///< double
    TW_TYPE_STDSTRING, ///< std::string
    TW_TYPE_COLOR4F,   ///< float[4]: red, green, blue, alpha
    TW_TYPE_VEC4F,     ///< float[4]
    TW_TYPE_VEC3F,     ///< float[3]
    TW_TYPE_QUAT4F,    ///< float[4]: x, y, z, w; set with a length of 1
    TW_TYPE_COUNT
};

/// One value of an enum; its variables are std::int64_t.
struct TwEnumVal
{
    std::int64_t Value;
    const char *Label;
};

/// What a value given to TwSetParam points at.
enum TwParamValueType
{
    TW_PARAM_INT32,
    TW_PARAM_DOUBLE,
    TW_PARAM_CSTRING ///< the value is the text itself
};

typedef void (*TwGetVarCallback)(void *value, void *clientData);
typedef void (*TwSetVarCallback)(const void *value, void *clientData);
typedef void (*TwButtonCallback)(void *clientData);
/// Tells which line of a menu was chosen, from 0.
typedef void (*TwMenuCallback)(int line, void *clientData);

/// One line of a list, for its callback to fill in.
struct TwListRow
{
    char text[160]; ///< zero-terminated
    int depth;      ///< steps that the line is indented
    int opens;      ///< 1: has lines below it and a mark to open them
    int isOpen;     ///< 1: these lines stand below it
    int marked;     ///< 1: shown as chosen
};

/// What a list asks of its owner. A click tells the line, and 1 where it hit the mark rather than the text.
struct TwListCallbacks
{
    unsigned (*count)(void *clientData);
    void (*row)(unsigned index, TwListRow *row, void *clientData);
    void (*click)(unsigned index, int onMark, void *clientData);
};

/// One picture of several.
struct TwPicture
{
    char file
        [1024]; ///< designed path of an image file, zero-terminated; one that cannot be read shows as an empty frame
    char label[160]; ///< stands below it, zero-terminated
};

/// What pictures ask of their owner.
struct TwPictureCallbacks
{
    unsigned (*count)(void *clientData);
    void (*picture)(unsigned index, TwPicture *picture, void *clientData);
    void (*click)(unsigned index, void *clientData);
};

/// A curve, from the oldest to the newest: between which values each step of time lay.
struct TwGraph
{
    const float *lows; ///< not a number where nothing was measured
    const float *highs;
    unsigned count;
    float latest; ///< shown as a number
    float cursor; ///< share of its width where a line stands; below 0 for none
};

/// Points a graph at its values, which stand until the next call.
typedef void (*TwGraphCallback)(TwGraph *graph, void *clientData);
typedef void (*TwGraphHeldCallback)(float share, void *clientData);

/// Makes a bar; null where the name is taken.
TwBar *TwNewBar(const char *barName);
/// Deletes a bar; one that is being drawn goes after it.
int TwDeleteBar(TwBar *bar);
/// Removes a variable, at once for its callbacks.
int TwRemoveVar(TwBar *bar, const char *name);
/// Removes all variables of a bar, at once for their callbacks.
int TwRemoveAllVars(TwBar *bar);
/// Defines the type of an enum, or finds it by its name.
TwType TwDefineEnum(const char *name, const TwEnumVal *enumValues, unsigned int nbValues);

/// Adds a variable. Without `setCallback` it can only be read.
int TwAddVarCB(TwBar *bar, const char *name, TwType type, TwSetVarCallback setCallback, TwGetVarCallback getCallback,
               void *clientData);
/// Has a variable tell when an edit is over: the mouse let go, Enter pressed.
int TwSetEditedCB(TwBar *bar, const char *name, TwButtonCallback edited);
/// Gives a variable a menu that a right click on it opens; its texts stand on lines of their own.
int TwSetMenuCB(TwBar *bar, const char *name, const char *texts, TwMenuCallback chosen);
/// Adds a text, got as std::string, with a button beside it unless it is empty.
int TwAddLinkCB(TwBar *bar, const char *name, TwGetVarCallback getCallback, TwButtonCallback pressed, void *clientData);
/// Adds a button with its label on it.
int TwAddButton(TwBar *bar, const char *name, TwButtonCallback callback, void *clientData);
/// Adds a list; lists and pictures share the room that the other lines leave. Only lines that are seen are asked for.
int TwAddListCB(TwBar *bar, const char *name, const TwListCallbacks *callbacks, void *clientData);
/// Adds pictures in rows, with a field to search their labels. Files are read as they come into view.
int TwAddPicturesCB(TwBar *bar, const char *name, const TwPictureCallbacks *callbacks, void *clientData);
/// Adds a curve over time, as wide as the bar.
int TwAddGraphCB(TwBar *bar, const char *name, TwGraphCallback getCallback, void *clientData);
/// Has a curve tell at which share of its width the mouse holds it, 0 to 1, for as long as it does.
int TwSetGraphHeldCB(TwBar *bar, const char *name, TwGraphHeldCallback held);

/// Sets an option of a variable, or of the bar itself where `varName` is null.
///
/// Of both: label; help, which a bar shows below its title and a variable beside the mouse. Of a bar: visible (int),
/// size (2 ints, pixels), place (4 ints: left, top, width, height; a negative left or top counts from the right or lower
/// edge), always (int: drawn even where only such bars are, see showTweakBars), front (int: comes up before the others),
/// plain (int: without a title, and fixed where it was put). Of a variable: group (heading it stands under), error (shown below it; empty for none), min, max and step (doubles), enabled, marked, sameline (stands beside
/// the one before), live (a text is set with each letter), closed (its group's heading is closed at first), rows (lines that a list
/// shows, in place of sharing the room; ints), choices (texts for the whole numbers from 0, a line each). A bar that the
/// user closed is not visible.
int TwSetParam(TwBar *bar, const char *varName, const char *paramName, TwParamValueType type, unsigned int count,
               const void *values);
/// Reads an option: visible of a bar, or the place where a bar or a variable's control stands (4 ints as above; all 0
/// for what is not seen).
int TwGetParam(TwBar *bar, const char *varName, const char *paramName, TwParamValueType type, unsigned int maxCount,
               void *values);

namespace port
{

/// Brings the bars to the screen and the messages to the bars.
class TweakBarBackend
{
public:
    virtual ~TweakBarBackend() = default;

    virtual bool init(TwGraphAPI graphAPI, void *device) = 0;
    virtual void windowSize(int width, int height) = 0;
    virtual bool draw() = 0;
    virtual void hide() = 0;
    /// Whether a bar consumed the message.
    virtual bool event(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) = 0;
    virtual void terminate() = 0;
};

/// Installs a backend in the place of our own, or with null none: then no bar shows, and none consumes a message.
void installTweakBarBackend(TweakBarBackend *backend);

/// Chooses which bars TwDraw lays out: all, or only those that are always shown.
/// @return whether there is any to lay out
bool showTweakBars(bool all);

/// Tells whether the mouse has a cursor that bars can hear; at first it has.
void letTweakBarsHearTheMouse(bool hear);

/// Whether the mouse is on a bar, or drags something on one.
bool tweakBarsHaveTheMouse();

/// Whether a text on a bar is being typed.
bool tweakBarsHaveTheKeyboard();

/// Has the bars take the next click that is on none of them.
void pickWithTweakBars();
/// Where that click was, client pixels; true once for each.
bool tweakBarsPicked(int &x, int &y);

/// Sets the font of all bars, a designed path, and its size in a window of a height, both in pixels; larger windows have
/// larger letters. A file that cannot be read leaves the built-in font.
void setTweakBarFont(const char *file, float size, int windowHeight);

/// Writes the window with its bars into a PNG file when they are next drawn. The path is a designed one.
void captureTweakBars(const char *pngFile);

} // namespace port
