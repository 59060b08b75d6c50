// WatchBar: the tweak bar "Watched", with properties of any objects and how they went.
#pragma once

#include "tools/bars/BarMemory.h"
#include "tools/bars/PropertyLine.h"

#include <memory>
#include <vector>

class TwBar;
class ValueGraph;

/// Lines for properties that are watched, each number with a curve of its last ten seconds.
///
/// A watch is a path and a name: it finds its object again in the next level, and says where there is none. The bar
/// comes up with the first watch, and stays on the screen with the others away when it is pinned.
class WatchBar
{
public:
    explicit WatchBar(BarMemory &memory);
    ~WatchBar();
    WatchBar(const WatchBar &) = delete;
    WatchBar &operator=(const WatchBar &) = delete;

    /// Begins or ends watching a property, with the next `refresh`: a line of this very bar may ask for it.
    void toggle(const Handle<Object> &object, const String &property);
    /// Brings the lines up to date with what there is, and the curves up to the present.
    void refresh(float elapsed);
    std::size_t getCount() const { return watches.size(); }
    /// The object of a watch by its number; invalid while there is none, and for a number that is none's.
    Handle<Object> getObject(int index) const;
    /// The property of a watch by its number; empty for one that is none's.
    String getProperty(int index) const;
    TwBar *getBar() const { return bar; }

private:
    struct Watched
    {
        BarMemory::Watch what;
        std::unique_ptr<PropertyLine> line; ///< null while there is no such object
        std::unique_ptr<ValueGraph> graph;  ///< null for what is no number
    };

    const Watched *find(int index) const;
    void takeFromMemory();
    void toggleNow(const BarMemory::Watch &what);
    void layOut();
    void addLines(Watched &watched, std::size_t index);
    void show(bool val);
    bool findObjects();

    BarMemory &memory;
    TwBar *bar = nullptr;
    std::vector<std::unique_ptr<Watched>> watches;
    std::vector<BarMemory::Watch> asked; ///< to be watched, or no longer
    bool isPinned = false;
    bool isStale = true;    ///< the lines have to be laid out anew
    int framesToSearch = 0; ///< for objects that are not there
};
