#include "tools/bars/ObjectBrowser.h"

#include "tools/bars/BarParams.h"
#include "tools/bars/ObjectPath.h"
#include "tools/bars/TweakSystem.h"

#include "object/tree/Object.h"
#include "object/tree/TreeWalk.h"
#include "object/tree/WellKnownPaths.h"
#include "port/tweakbar/TweakBar.h"

#include <algorithm>
#include <cstdio>

namespace
{
constexpr int RENEWAL_FRAMES = 30;
constexpr int RENEWAL_FRAMES_OF_MANY = 240;
constexpr std::size_t MANY_LINES = 5000; ///< so many are laid out anew less often
constexpr std::size_t OBJECTS_A_FRAME = 5000;
constexpr std::size_t READ_OBJECTS_A_FRAME = 100; ///< some thirty properties each
constexpr const char *SEARCH = "search";

/// The tops of what is listed: the level, then the systems.
std::vector<Handle<Object>> roots()
{
    return {getObjectByPath(WellKnownPaths::currentLevel), getObjectByPath(WellKnownPaths::systems)};
}
} // namespace

ObjectBrowser::ObjectBrowser(Opener open) : open(std::move(open)), query("")
{
    bar = TwNewBar("Objects");
    BarParams::setText(bar, nullptr, "help", SCS("Click an object to open its bar."));
    BarParams::setSize(bar, 300, 620);
    addHead();
    TwAddVarCB(
        bar, SEARCH, TW_TYPE_STDSTRING,
        [](const void *value, void *self)
        { static_cast<ObjectBrowser *>(self)->setSearch(*static_cast<const std::string *>(value)); },
        [](void *value, void *self)
        { *static_cast<std::string *>(value) = static_cast<const ObjectBrowser *>(self)->search; },
        this);
    BarParams::setText(
        bar, SEARCH, "help",
        SCS("Parts of a name or a class; class:light with all that derive from it; path:villa/; value:0.5 for any "
            "property, mass:>2 or gait:runs for one. Several words have to be met together."));
    BarParams::setNumber(bar, SEARCH, "live", 1);
    const TwListCallbacks list = {
        [](void *self) { return static_cast<unsigned>(static_cast<const ObjectBrowser *>(self)->lines.size()); },
        [](unsigned index, TwListRow *row, void *self)
        { static_cast<const ObjectBrowser *>(self)->fillRow(index, *row); },
        [](unsigned index, int onMark, void *self) { static_cast<ObjectBrowser *>(self)->click(index, onMark != 0); }};
    TwAddListCB(bar, "tree", &list, this);
    BarParams::setText(bar, "tree", "label", String());
}

void ObjectBrowser::addHead()
{
    TwAddButton(
        bar, "pick with the mouse", [](void *) { getSystemDeref<TweakSystem>().pickWithMouse(); }, nullptr);
    BarParams::setText(bar, "pick with the mouse", "help",
                       SCS("The next click into the world opens the bar of what is there."));
    TwAddButton(
        bar, "under the crosshair", [](void *) { getSystemDeref<TweakSystem>().pickUnderCrosshair(); }, nullptr);
    BarParams::setText(bar, "under the crosshair", "help",
                       SCS("Opens the bar of what is in the middle of the picture."));
    BarParams::setNumber(bar, "under the crosshair", "sameline", 1);
}

ObjectBrowser::~ObjectBrowser()
{
    TwDeleteBar(bar);
}

bool ObjectBrowser::isOpen() const
{
    return BarParams::isVisible(bar);
}

void ObjectBrowser::show()
{
    BarParams::setNumber(bar, nullptr, "visible", 1);
}

void ObjectBrowser::setSearch(const std::string &text)
{
    if (text == search)
        return;
    search = text;
    query = ObjectQuery(search);
    framesToRenewal = 0;
}

void ObjectBrowser::refresh()
{
    goOnSearching();
    const bool isNew = treeVersion != ObjectMap().getChangeCount();
    const bool waits = lines.size() > MANY_LINES || nextCandidate < candidates.size();
    if (--framesToRenewal > 0 && (!isNew || waits))
        return;
    framesToRenewal = waits ? RENEWAL_FRAMES_OF_MANY : RENEWAL_FRAMES;
    treeVersion = ObjectMap().getChangeCount();
    if (!query.isEmpty())
        return beginSearch();
    lines.clear();
    candidates.clear();
    nextCandidate = 0;
    for (const Handle<Object> &h : roots())
        if (const auto root = h.lookup())
            listTree(*root);
}

void ObjectBrowser::beginSearch()
{
    candidates.clear();
    nextCandidate = 0;
    found.clear();
    for (const Handle<Object> &h : roots())
    {
        const auto root = h.lookup();
        if (!root)
            continue;
        TreeWalk walk(*root);
        while (const Object *object = walk.next())
            candidates.push_back(object->getHandle());
    }
    goOnSearching();
}

/// What was found before stays in the list until the search is through, so that it does not flicker.
void ObjectBrowser::goOnSearching()
{
    if (nextCandidate >= candidates.size())
        return;
    const std::size_t share = query.readsValues() ? READ_OBJECTS_A_FRAME : OBJECTS_A_FRAME;
    const std::size_t end = std::min(candidates.size(), nextCandidate + share);
    for (; nextCandidate < end; ++nextCandidate)
    {
        const auto object = candidates[nextCandidate].lookup();
        std::string shown;
        if (object && query.matches(*object, shown))
            found.push_back({candidates[nextCandidate], 0, false, shown});
    }
    if (nextCandidate == candidates.size() || found.size() > lines.size())
        lines = found;
}

bool ObjectBrowser::isExpanded(const Handle<Object> &object, int depth) const
{
    return (toggled.count(object.getNumber()) > 0) != (depth == 0);
}

void ObjectBrowser::listTree(Object &root)
{
    TreeWalk walk(root);
    while (const Object *object = walk.next())
    {
        const Handle<Object> h = object->getHandle();
        const int depth = static_cast<int>(walk.getDepth());
        lines.push_back({h, depth, object->getChildCount() > 0, {}});
        if (!isExpanded(h, depth))
            walk.skipChildren();
    }
}

void ObjectBrowser::fillRow(unsigned index, TwListRow &row) const
{
    const Line &line = lines[index];
    const auto object = line.object.lookup();
    row.depth = line.depth;
    row.opens = line.opens;
    row.isOpen = isExpanded(line.object, line.depth);
    if (!object)
        return; // died in this frame; the next refresh drops it
    const String name = query.isEmpty() ? object->getName() : objectPath(line.object);
    std::snprintf(row.text, sizeof(row.text), "%s  (%s)  %s", name.toCString(),
                  object->getType()->getName().toCString(), line.found.c_str());
}

void ObjectBrowser::click(unsigned index, bool onMark)
{
    const Line line = lines[index];
    if (!onMark)
        return open(line.object);
    if (!toggled.erase(line.object.getNumber()))
        toggled.insert(line.object.getNumber());
    framesToRenewal = 0;
}

std::vector<Handle<Object>> ObjectBrowser::getObjects() const
{
    std::vector<Handle<Object>> objects;
    for (const Line &line : lines)
        objects.push_back(line.object);
    return objects;
}
