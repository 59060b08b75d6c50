// ReverbVolume: a part of a map that sounds as a room of some kind.
#pragma once

#include "physics/acoustics/ReverbPresets.h"

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

/// A box whose inside sounds as a room of some kind, under the component key "reverb".
///
/// The box lies around the place of the entity's transform and turns with it; metres, in the transforms' space. Within
/// `fade` of its faces it shares the sound with what is around it. Where boxes overlap the smaller one comes first, so
/// that a cupboard stands in a hall. It collides with nothing and is found by the manager of its key, `ReverbManager`.
class ReverbVolume : public SimpleComponent
{
    KV_REFLECTED(ReverbVolume)
public:
    ReverbVolume();

    /// Says in the log where a designer gave a box without an extent.
    void onLoadComplete() override;
    /// Nothing: a box is read where it stands when somebody asks.
    void doFrame() override {}
    /// Draws the box and the name of its preset, while the debug switch of the sound's ways asks for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Full extents of the box along its own axes, metres.
    Vec4 getSize() const { return size; }
    /// Sets the extents; what is no number, or negative, is logged as an error and changes nothing.
    void setSize(Vec4 val);
    /// Name of the preset: what kind of room it is.
    String getPreset() const;
    /// Chooses the preset: none, smallRoom, woodRoom, hall, cellar, chapel, tunnel or outdoors.
    ///
    /// Another name is logged as an error that lists these, and changes nothing.
    void setPreset(String name);
    /// How far inside its faces the box is whole, metres.
    float getFade() const { return fade; }
    /// Sets how far inside its faces the box is whole; 0 begins at once. Less is logged as an error and changes nothing.
    void setFade(float val);

    /// The preset's figures.
    const ReverbPreset &getFigures() const { return *preset; }
    /// How much of a point the box takes, from 0 outside and on its faces to 1 deeper than `fade`.
    float shareAt(Vec4 point);
    /// Metres cubed: the smaller box comes first.
    float getContent() const { return size.x * size.y * size.z; }

private:
    Vec4 size = Vec4(4.f, 3.f, 4.f, 0.f); ///< metres
    const ReverbPreset *preset;           ///< one of the table
    float fade = 0.7f;                    ///< metres: a step through a door
};
