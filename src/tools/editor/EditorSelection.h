// EditorSelection: which entities are selected, and the boxes around what is drawn of them.
#pragma once

#include "tools/editor/SeenMesh.h"

#include "foundation/Quaternion.h"
#include "object/tree/Handle.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

class EditorOverlay;
class Entity;

/// The selected entities in the order in which they were, and those that are outlined in a colour of their own.
///
/// What dies leaves by itself. The box of each stands in its own frame, so that it need not be measured while it moves;
/// one of them is measured anew in each frame all the same, since parts may move by themselves.
class EditorSelection
{
public:
    /// @return whether it was not selected before
    bool add(const Handle<Entity> &entity);
    bool remove(const Handle<Entity> &entity);
    void clear();
    bool has(const Handle<Entity> &entity) const { return index.count(entity.getNumber()) != 0; }
    /// Whether an entity is selected, or stands below one that is.
    bool takesAlong(const Object &entity) const;
    /// Drops what has died.
    /// @return whether there was any
    bool dropDead();

    std::size_t size() const { return outlined.size(); }
    /// The selected ones, first one first.
    std::vector<Handle<Entity>> list() const;
    /// The one that was selected last; invalid for none.
    Handle<Entity> newest() const;
    /// The middle of all places, world space; the origin for none.
    Vec4 middle() const;
    /// Around all that is drawn of the selected ones.
    SpanBox bounds();

    /// Outlines an entity in a colour, selected or not; an alpha of 0 ends that.
    void outline(const Handle<Entity> &entity, const Vec4 &color);
    void clearOutlines() { colored.clear(); }

    void draw(EditorOverlay &overlay);

private:
    struct Outline
    {
        Handle<Entity> entity;
        SpanBox box; ///< own frame of the entity: turned and placed with it
        std::uint64_t objectChanges = 0;
        Vec4 color;
    };

    static void measure(Outline &outline);
    static void drawOne(EditorOverlay &overlay, Outline &outline, const Vec4 &color, float width);

    std::vector<Outline> outlined; ///< selected
    std::vector<Outline> colored;
    std::unordered_map<machine_word, std::size_t> index; ///< into `outlined`, by number
    std::size_t next = 0;                                ///< to be measured anew
};

/// Around all that is drawn of an object and of what stands below it, world space; around its place for what has
/// nothing to see.
SpanBox boundsOfTree(const Handle<Object> &root);
/// The same in the frame of a matrix that has no scale.
SpanBox boundsOfTree(const Handle<Object> &root, const Matrix4 &worldToFrame);
