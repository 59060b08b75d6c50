#include "tools/bars/ObjectBrowser.h"

#include "tools/bars/ObjectPath.h"

#include "object/tree/Object.h"
#include "object/tree/TreeWalk.h"
#include "object/tree/WellKnownPaths.h"
#include "port/tweakbar/TweakBar.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace
{
constexpr int RENEWAL_FRAMES = 30;
constexpr const char *SEARCH = "search";

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

/// The tops of what is listed: the level, then the systems.
std::vector<Handle<Object>> roots()
{
    return {getObjectByPath(WellKnownPaths::currentLevel), getObjectByPath(WellKnownPaths::systems)};
}
} // namespace

ObjectBrowser::ObjectBrowser(Opener open) : open(std::move(open))
{
    bar = TwNewBar("Objects");
    TwSetParam(bar, nullptr, "help", TW_PARAM_CSTRING, 1, "Click an object to open its bar.");
    const int size[] = {300, 620};
    TwSetParam(bar, nullptr, "size", TW_PARAM_INT32, 2, size);
    TwAddVarCB(
        bar, SEARCH, TW_TYPE_STDSTRING,
        [](const void *value, void *self)
        { static_cast<ObjectBrowser *>(self)->setSearch(*static_cast<const std::string *>(value)); },
        [](void *value, void *self)
        { *static_cast<std::string *>(value) = static_cast<const ObjectBrowser *>(self)->search; },
        this);
    TwSetParam(bar, SEARCH, "help", TW_PARAM_CSTRING, 1,
               "Part of a name or of a class; Enter lists what holds it, an empty text brings the tree back.");
    const TwListCallbacks list = {
        [](void *self) { return static_cast<unsigned>(static_cast<const ObjectBrowser *>(self)->lines.size()); },
        [](unsigned index, TwListRow *row, void *self)
        { static_cast<const ObjectBrowser *>(self)->fillRow(index, *row); },
        [](unsigned index, int onMark, void *self) { static_cast<ObjectBrowser *>(self)->click(index, onMark != 0); }};
    TwAddListCB(bar, "tree", &list, this);
    TwSetParam(bar, "tree", "label", TW_PARAM_CSTRING, 1, "");
}

ObjectBrowser::~ObjectBrowser()
{
    TwDeleteBar(bar);
}

bool ObjectBrowser::isOpen() const
{
    int visible = 0;
    return TwGetParam(bar, nullptr, "visible", TW_PARAM_INT32, 1, &visible) && visible;
}

void ObjectBrowser::show()
{
    const int visible = 1;
    TwSetParam(bar, nullptr, "visible", TW_PARAM_INT32, 1, &visible);
}

void ObjectBrowser::setSearch(const std::string &text)
{
    search = lowerCase(text);
    framesToRenewal = 0;
}

void ObjectBrowser::refresh()
{
    if (--framesToRenewal > 0 && treeVersion == ObjectMap().getChangeCount())
        return;
    framesToRenewal = RENEWAL_FRAMES;
    treeVersion = ObjectMap().getChangeCount();
    lines.clear();
    for (const Handle<Object> &h : roots())
    {
        const auto root = h.lookup();
        if (root && search.empty())
            listTree(*root);
        else if (root)
            listMatches(*root);
    }
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
        lines.push_back({h, depth, object->getChildCount() > 0});
        if (!isExpanded(h, depth))
            walk.skipChildren();
    }
}

void ObjectBrowser::listMatches(Object &root)
{
    TreeWalk walk(root);
    while (const Object *object = walk.next())
        if (matches(*object))
            lines.push_back({object->getHandle(), 0, false});
}

bool ObjectBrowser::matches(const Object &object) const
{
    return lowerCase(object.getName().toCString()).find(search) != std::string::npos ||
           lowerCase(object.getType()->getName().toCString()).find(search) != std::string::npos;
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
    const String place = search.empty() ? String() : objectPath(line.object);
    std::snprintf(row.text, sizeof(row.text), "%s  (%s)  %s", object->getName().toCString(),
                  object->getType()->getName().toCString(), place.toCString());
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
