// LiteralPaths: the search for paths written down step by step, with ordered lists and look-ups by comparison.
#pragma once

#include "ai/paths/PathNode.h"
#include "physics/grid/SquareGrid.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <list>
#include <memory>
#include <vector>

/// Finds the same paths as the path manager in the same number of slices, without any of its shortcuts.
class LiteralPaths
{
public:
    LiteralPaths(SquareGrid &mainGrid, SquareGrid &saturationGrid) : main(mainGrid), saturation(saturationGrid) {}

    /// Runs one search to its end; the path from its end to its start, empty where there is none.
    HexCont find(const GridCell &start, const GridCell &destination, bool rubberbanding, bool saturates, float most)
    {
        pool.clear();
        open.clear();
        closed.clear();
        slices = 1;
        target = destination;
        insert(create(start, nullptr));
        for (int pass = 0; !open.empty(); ++pass)
        {
            if (pass == 30)
            {
                afterSlice(slices);
                pass = 0, ++slices;
            }
            PathNode *const node = open.front();
            open.pop_front();
            closed.push_back(node);
            if (node->hex == destination)
                return finish(node, rubberbanding, saturates, most);
            for (const GridCell &next : node->hex.getValidNeighbors())
                if (next.getFloatValue() == 0.f)
                    reach(*node, next);
        }
        return HexCont();
    }

    std::function<void(int)> afterSlice = [](int) {}; ///< done before the search goes on, with the slice's number
    int slices = 0;                                   ///< of 30 nodes, in the last search
    std::size_t reopened = 0;

private:
    typedef std::list<PathNode *> Nodes;

    PathNode *create(const GridCell &cell, PathNode *parent)
    {
        pool.push_back(std::make_unique<PathNode>());
        PathNode *const node = pool.back().get();
        node->hex = cell;
        price(*node, parent);
        return node;
    }
    void price(PathNode &node, PathNode *parent)
    {
        const GridCell there = saturation.getCell(node.hex.getX(), node.hex.getZ());
        node.parent = parent;
        node.movementCost = parent ? parent->movementCost + there.getFloatValue() + 1.f : 0.f;
        node.heuristic = node.hex.gridManhattanDistance(target);
        node.totalCost = node.movementCost + node.heuristic;
    }
    void insert(PathNode *node)
    {
        const auto behind =
            std::upper_bound(open.begin(), open.end(), node,
                             [](const PathNode *a, const PathNode *b) { return a->totalCost < b->totalCost; });
        open.insert(behind, node);
    }
    static Nodes::iterator findIn(Nodes &nodes, const GridCell &cell)
    {
        return std::find_if(nodes.begin(), nodes.end(), [&](const PathNode *node) { return node->hex == cell; });
    }
    void reach(PathNode &from, const GridCell &cell)
    {
        for (Nodes *const nodes : {&open, &closed})
        {
            const auto found = findIn(*nodes, cell);
            if (found == nodes->end())
                continue;
            PathNode better = **found;
            price(better, &from);
            if (!((*found)->totalCost > better.totalCost))
                return;
            reopened += nodes == &closed;
            PathNode *const node = *found;
            nodes->erase(found);
            *node = better;
            return insert(node);
        }
        insert(create(cell, &from));
    }
    HexCont finish(PathNode *end, bool rubberbanding, bool saturates, float most)
    {
        std::size_t count = 0;
        for (const PathNode *node = end; node; node = node->parent, ++count)
        {
            const GridCell cell = saturation.getCell(node->hex.getX(), node->hex.getZ());
            if (!saturates || !cell.isValid() || !(most > cell.getFloatValue()))
                continue;
            cell.setFloatValue(cell.getFloatValue() + most);
            HexCont visited;
            diffuse(cell, visited);
        }
        if (count >= 3 && rubberbanding)
            tighten(end);
        HexCont path;
        for (const PathNode *node = end; node; node = node->parent)
            path.push_back(node->hex);
        return path;
    }
    static void diffuse(const GridCell &hex, HexCont &visited)
    {
        const float v = std::sqrt(hex.getFloatValue());
        if (v < 1.5f)
            return;
        HexCont appended;
        for (const GridCell &next : hex.getValidNeighbors())
        {
            if (std::find(visited.begin(), visited.end(), next) != visited.end() || !(v > next.getFloatValue()))
                continue;
            visited.push_back(next);
            appended.push_back(next);
            next.setFloatValue(next.getFloatValue() + v);
        }
        for (const GridCell &next : appended)
            diffuse(next, visited);
    }
    void tighten(PathNode *end)
    {
        PathNode *first = end, *middle = end->parent, *last = middle->parent;
        do
        {
            if (isStraight(*first, *last))
                first->parent = last;
            else
                first = middle;
            middle = last;
            last = last->parent;
        } while (last);
    }
    bool isStraight(const PathNode &first, const PathNode &last) const
    {
        const int minX = std::min(first.hex.getX(), last.hex.getX()),
                  maxX = std::max(first.hex.getX(), last.hex.getX());
        const int minZ = std::min(first.hex.getZ(), last.hex.getZ()),
                  maxZ = std::max(first.hex.getZ(), last.hex.getZ());
        if (std::abs(maxZ - minZ) == 1)
            return isWalkable(main.getCell(minX + 1, minZ)) && isWalkable(main.getCell(minX + 1, maxZ));
        for (int z = minZ; z <= maxZ; ++z)
            for (int x = minX; x <= maxX; ++x)
                if (!isWalkable(main.getCell(x, z)))
                    return false;
        return true;
    }

    SquareGrid &main;
    SquareGrid &saturation;
    GridCell target;
    std::vector<std::unique_ptr<PathNode>> pool;
    Nodes open, closed;
};
