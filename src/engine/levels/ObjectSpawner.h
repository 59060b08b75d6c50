// ObjectSpawner: makes an object of a script's pattern when something sets it off.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

/// Makes one object at a place when it is set off, under the component key "trigger" or "scriptedEvent".
///
/// The object hangs below the map that the spawner's entity stands in, or else below the level. Triggers fire in every
/// frame of a touch, so a spawner that has made its object is inactive until a script arms it again. So does a reload
/// of its map, unless `kaVel.persist(spawner, 'setActive', False)` notes that it is spent.
class ObjectSpawner : public SimpleComponent
{
    KV_REFLECTED(ObjectSpawner)
public:
    ObjectSpawner() = default;

    void doFrame() override {}

    /// Makes the object if the spawner is active, which it then is no longer; invalid where nothing was made.
    ///
    /// Named after the spawner's entity, the type and a number. A pattern that raises is logged as an error.
    /// @param phys  the body that set the spawner off; none is fine
    Handle<Object> spawnObject(Handle<Object> phys);

    /// Whether the next call makes an object.
    bool getActive() const { return active; }
    void setActive(bool val) { active = val; }
    /// Where objects are put: the `at` of their pattern, in the space of the map's transforms, metres.
    ///
    /// The root of a pattern that takes none has its transform put there.
    Vec4 getPosition() const { return position; }
    void setPosition(Vec4 val) { position = val; }
    /// Level whose module has the pattern; empty for the module of all patterns, `objects.GameObjects`.
    String getLevel() const { return level; }
    void setLevel(const String &val) { level = val; }
    /// Name of the pattern.
    String getObjectType() const { return objectType; }
    void setObjectType(const String &val) { objectType = val; }

private:
    bool active = true;
    Vec4 position = Vec4(0.f, 0.f, 0.f, 1.f); ///< metres
    String level;                             ///< empty for the patterns of the whole game
    String objectType;                        ///< name of a pattern
    int spawnCount = 0;                       ///< objects made so far, for their names
};
