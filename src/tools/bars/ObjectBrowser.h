// ObjectBrowser: the tweak bar "Objects", in which any object is found and opened.
#pragma once

#include "tools/bars/ObjectQuery.h"

#include "object/tree/Handle.h"

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

class TwBar;
struct TwListRow;

/// The object tree as a list whose lines open, or the objects that meet a search, see `ObjectQuery`.
///
/// A search that reads properties goes over a part of the tree in each frame, and again from the start once it is through
/// and something has been born or has died.
class ObjectBrowser
{
public:
    using Opener = std::function<void(const Handle<Object> &)>;

    /// @param open  called with the object that was picked
    explicit ObjectBrowser(Opener open);
    ~ObjectBrowser();
    ObjectBrowser(const ObjectBrowser &) = delete;
    ObjectBrowser &operator=(const ObjectBrowser &) = delete;

    /// Whether the user has left the bar open.
    bool isOpen() const;
    /// Opens it again.
    void show();
    /// Brings the lines up to date with the tree. Once a frame; walks the tree only when it may have changed.
    void refresh();
    /// Lists the objects that meet a search; an empty one brings the tree back.
    void setSearch(const std::string &text);

    /// The objects of the lines, from the top.
    std::vector<Handle<Object>> getObjects() const;
    /// The bar itself, for a test to look at.
    TwBar *getBar() const { return bar; }

private:
    struct Line
    {
        Handle<Object> object;
        int depth;
        bool opens;
        std::string found; ///< by which value a search has met it
    };

    void addHead();
    void listTree(Object &root);
    void beginSearch();
    void goOnSearching();
    /// Whether the children are listed: those of a root at first, others once their mark was clicked.
    bool isExpanded(const Handle<Object> &object, int depth) const;
    void fillRow(unsigned index, TwListRow &row) const;
    void click(unsigned index, bool onMark);

    Opener open;
    TwBar *bar = nullptr;
    std::vector<Line> lines;
    std::unordered_set<std::uint32_t> toggled; ///< numbers of the objects whose mark was clicked an odd number of times
    std::string search;                        ///< empty: the tree
    ObjectQuery query;
    std::vector<Handle<Object>> candidates; ///< of the search, in the order of the tree
    std::size_t nextCandidate = 0;
    std::vector<Line> found;       ///< by the search that is under way
    std::uint64_t treeVersion = 0; ///< births and deaths when the lines were made
    int framesToRenewal = 0;       ///< for what is renamed or moved
};
