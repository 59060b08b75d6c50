// EditorPicking: what of a level lies under a pixel, or in a rectangle of the window.
#pragma once

#include "tools/editor/SeenMesh.h"
#include "tools/editor/EditorView.h"

#include "object/tree/Handle.h"

#include <cstdint>
#include <functional>
#include <unordered_set>
#include <vector>

class Coordinator;
class Entity;
class GraphicsComponent2;

/// What a way into the world meets.
struct PickHit
{
    Handle<Entity> entity; ///< invalid for nothing
    Vec4 place;            ///< world space, w 1
    Vec4 normal;           ///< of the surface, towards the eye, of length 1
    float distance = 0.f;  ///< metres
};

/// What has no mesh and is shown as a mark: a light, or a thing of volumes, sounds, or nothing at all.
struct PickMark
{
    Handle<Entity> entity;
    bool isLight = false;
};

/// Finds entities of a level by what is drawn of them, triangle by triangle, and those without a mesh by their marks.
///
/// Passes over what is not visible, what is not to be picked with all below it, and what the engine keeps for itself,
/// whose names begin with a dot. Keeps the list of marks as long as no object is born or dies.
class EditorPicking
{
public:
    typedef std::function<bool(const Entity &)> Skip;

    /// The nearest thing that a way meets with its drawn front.
    PickHit cast(Coordinator &level, const ViewRay &ray, const Skip &skip = Skip()) const;
    /// The nearest thing whose front is seen at a pixel, past what the view cuts off.
    PickHit castAt(Coordinator &level, const EditorView &view, float x, float y, const Skip &skip = Skip()) const;
    /// What is seen at a pixel: the nearest mesh, or the mark that lies there.
    PickHit pick(Coordinator &level, const EditorView &view, float x, float y);
    /// Every thing whose drawn middle, or mark, is seen within a rectangle, each once.
    std::vector<Handle<Entity>> pickBox(Coordinator &level, const EditorView &view, const ViewRect &rect);

    /// The marks of a level, in the order of its tree.
    const std::vector<PickMark> &marksOf(Coordinator &level);
    /// Whether a thing may be picked, by itself and by what it hangs on.
    bool isPickable(const Entity &entity) const;
    void setPickable(const Handle<Object> &entity, bool val);
    bool getPickable(const Handle<Object> &entity) const { return !barred.count(entity.getNumber()); }

private:
    std::unordered_set<machine_word> barred; ///< roots that are not to be picked, by number
    std::vector<PickMark> marks;
    Handle<Coordinator> markedLevel;
    std::uint64_t objectChanges = 0; ///< births and deaths that the marks take account of
};

/// Calls a function with each component of a level that is drawn in the world and visible.
void forEachDrawn(Coordinator &level, const std::function<void(GraphicsComponent2 &)> &function);
/// The entity that a component belongs to; null for none.
Entity *entityOf(const GraphicsComponent2 &component);
