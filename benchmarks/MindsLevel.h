// MindsLevel: creatures that perceive, think, plan and steer on a map of noise, as a level of the engine.
#pragma once

#include "Arena.h"

#include "ai/paths/PathFollower.h"
#include "ai/paths/PathManager.h"
#include "ai/perception/PerceptionComponent.h"
#include "ai/perception/PerceptionManager.h"
#include "physics/grid/SquareGrid.h"

#include <cstdint>
#include <memory>
#include <vector>

/// 256 x 256 cells of 1 m, of which 30 % are walls, lamps among them, a player who goes round in circles and can be
/// heard, and creatures that pursue, search or wander.
class MindsLevel
{
public:
    static constexpr int FRAMES = 600;

    explicit MindsLevel(int creatures);

    /// Moves the player, lets him be heard, and moves the bodies; what is not the minds' own work.
    void move(int frame);
    /// The minds' share of a frame.
    void doFrame();
    /// A number that is the same where every transform is, to the last bit.
    std::uint64_t hashOfTransforms() const;

    /// What the minds have done so far: ticks of leaves, lines of sight, questions for light and for ways of sound, frames
    /// in which a path was searched; and how many creatures are on a way, and know where the player is.
    struct Counts
    {
        double ticks = 0, sightLines = 0, lights = 0, sounds = 0, searchFrames = 0, underWay = 0, knowing = 0;
    };
    Counts getCounts() const;

private:
    void buildWalls();
    void buildGrid(const char *name, bool hasWalls);
    void buildLamps();
    void buildTree();
    void addCreature(int x, int z);
    Vec4 middleOf(int x, int z) const;
    Handle<Entity> addEntity(const char *name, const Handle<Object> &parent);
    static Vec4 playersPlace(int frame);

    bench::GridMap cells;
    ArenaLevel arena;
    PerceptionManager *senses = nullptr;
    PathManager *paths = nullptr;
    int searchFrames = 0;
    std::vector<AbstractManager *> minds;  ///< in the order of the frame
    std::vector<AbstractManager *> bodies; ///< likewise
    std::vector<TransformComponent *> transforms;
    std::vector<PerceptionComponent *> creatures;
    std::vector<PathFollower *> followers;
    TransformComponent *player = nullptr;
    Handle<Entity> playersEntity;
};
