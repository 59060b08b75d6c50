// PlaceLines: where an entity stands, as lines of a bar.
#pragma once

#include "object/reflection/Variant.h"
#include "object/tree/Handle.h"

#include <memory>

class RigidMove;
class TransformComponent;
class TwBar;

/// Place in metres, turn in degrees and scale of an entity; an edit moves everything that hangs on it along.
///
/// An edit is told as one of the transform's properties. The entity may die at any time.
class PlaceLines
{
public:
    PlaceLines(const Handle<Object> &entity, const Handle<TransformComponent> &transform);
    ~PlaceLines();
    PlaceLines(const PlaceLines &) = delete;
    PlaceLines &operator=(const PlaceLines &) = delete;

    void addTo(TwBar *bar);

private:
    /// What one line edits.
    struct Line
    {
        PlaceLines *owner;
        const char *property; ///< of the transform
    };

    void begin(const Line &line);
    void finish(const Line &line);
    Variant read(const char *property) const;
    static void setPlace(const void *value, void *self);
    static void setTurn(const void *value, void *self);
    static void setScale(const void *value, void *self);
    static void getVector(void *value, void *self);
    static void getTurn(void *value, void *self);

    Handle<Object> entity;
    Handle<TransformComponent> transform;
    Line place{this, "position"};
    Line turn{this, "orientation"};
    Line scale{this, "scale"};
    Variant before;                  ///< when the present edit began
    Vec4 placeBefore;                ///< likewise
    Quaternion turnBefore;           ///< likewise
    std::unique_ptr<RigidMove> move; ///< of all that comes along
    bool isBegun = false;
};
