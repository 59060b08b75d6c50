// PhysicsManager: moves the bodies of a level.
#pragma once

#include "physics/bodies/PlayerPhysics.h"

#include "engine/entities/AbstractManager.h"

#include <vector>

/// Manager of the key "physics": gravity and forces move each body once a frame, oldest first.
///
/// There is no fixed step: a frame is one step, of the frame time of the level's timer "master". Contacts are found and
/// resolved afterwards, by the partitioning grids.
class PhysicsManager : public AbstractManager
{
    KV_REFLECTED(PhysicsManager)
public:
    /// Pull on every moved body, newtons downwards. A force: the fall depends on the inverse mass.
    static constexpr float GRAVITY_FORCE = 20.f;

    PhysicsManager() = default;

    /// Temporary function for the coordinator to call.
    ///
    /// Moves every body that has a bounding volume beside it, unless that is a wall.
    void doFrame() override;
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    /// Murders the body unless it is dying already.
    void destroyComponent(Handle<AbstractComponent> component) override;

    /// Chooses the player's body, which is told of shadows.
    void setPlayer(Handle<PlayerPhysics> player) { currentPlayer = player; }
    /// The player's body; invalid while there is none.
    Handle<PlayerPhysics> getPlayer() const { return currentPlayer; }

private:
    void prefetchBehind(std::size_t index) const;
    void moveBody(PhysicsComponent &body, Seconds frameTime);

    std::vector<Handle<PhysicsComponent>> components; ///< ascending
    Handle<PlayerPhysics> currentPlayer;
    Seconds timeSinceLastPhysicsFrame = 0.0; ///< stays 0: there is no fixed step to save up for
};
