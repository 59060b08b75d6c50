// ReverbManager: which rooms a listener hears himself in.
#pragma once

#include "physics/acoustics/ReverbPresets.h"

#include "engine/entities/SimpleManager.h"

#include "foundation/Vector.h"

class MapRootEntity;
class Variant;

/// The two kinds of room that are strongest at a point.
struct ReverbShare
{
    const ReverbPreset *first;  ///< the stronger one
    const ReverbPreset *second; ///< the other one; the same where there is none
    float share;                ///< of the second, 0 to 0.5
};

/// How it crosses the reflection layer: as the script class `ReverbShare`, with the presets' names.
void SetToVariant(Variant &v, const ReverbShare &share);

/// Manager of the key "reverb": the reverberating volumes of a level.
class ReverbManager : public SimpleManager
{
    KV_REFLECTED(ReverbManager)
public:
    ReverbManager();

    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    ReflectorPtr getComponentClass() const override;

    /// The two strongest kinds of room at a point of a map, in the space of its transforms.
    ///
    /// The smaller box comes first and leaves to the larger ones what it does not take; what none takes belongs to
    /// `surroundings`. A point that is no number is in the surroundings alone.
    /// @cost grows with the boxes of the level; allocates nothing
    ReverbShare zonesAt(Vec4 point, Handle<MapRootEntity> map);

    /// Name of the preset of what lies outside all boxes.
    String getSurroundings() const;
    /// Chooses the preset of what lies outside all boxes, as `ReverbVolume::setPreset` does.
    void setSurroundings(String name);

private:
    const ReverbPreset *surroundings; ///< one of the table
};
