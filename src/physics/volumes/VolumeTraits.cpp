#include "physics/volumes/VolumeTraits.h"

namespace
{

constexpr bool o = false, X = true;
constexpr Vec4 YELLOW(1.f, 0.9f, 0.2f, 1.f), ORANGE(1.f, 0.55f, 0.1f, 1.f), GREY(0.5f, 0.5f, 0.5f, 1.f);
constexpr Vec4 BLUE(0.3f, 0.5f, 1.f, 1.f), CYAN(0.2f, 0.9f, 0.9f, 1.f), WHITE(1.f, 1.f, 1.f, 1.f);
constexpr Vec4 PURPLE(0.6f, 0.2f, 0.8f, 1.f), RED(1.f, 0.15f, 0.15f, 1.f), PINK(1.f, 0.6f, 0.8f, 1.f);
constexpr Vec4 BROWN(0.6f, 0.45f, 0.3f, 1.f), OLIVE(0.35f, 0.35f, 0.2f, 1.f);

} // namespace

constexpr VolumeTraits VolumeTraits::table[BoundingVolume::NUM_VOLUMES] = {
    // clang-format off
    // shape debugColor reachesAsBall isStatic isPlayer isShadow isBody isSolid takesForces keepsTests
    {  BALL, YELLOW,    X,            o,       o,       o,       X,     X,      X,          o }, // BV_SPHERE
    {  BOX,  ORANGE,    o,            o,       o,       o,       X,     X,      X,          o }, // BV_BOX
    {  BOX,  GREY,      o,            o,       o,       o,       o,     o,      X,          o }, // BV_NONE
    {  BOX,  BLUE,      o,            X,       o,       o,       o,     X,      o,          o }, // BV_WALL
    {  BOX,  CYAN,      o,            o,       o,       o,       o,     X,      o,          o }, // BV_DOOR
    {  BOX,  WHITE,     o,            o,       X,       o,       o,     X,      X,          o }, // BV_PLAYER
    {  BOX,  PURPLE,    o,            o,       o,       X,       o,     o,      o,          o }, // BV_SHADOW
    {  LINE, RED,       X,            o,       o,       o,       o,     o,      X,          o }, // BV_BULLET
    {  BOX,  PINK,      o,            o,       o,       o,       o,     o,      X,          X }, // BV_PARTICLE
    {  BOX,  BROWN,     X,            o,       o,       o,       o,     o,      o,          o }, // BV_CONTAINER
    {  BOX,  OLIVE,     X,            o,       o,       o,       o,     o,      o,          o }, // BV_PARTITIONING_DUMMY
    // clang-format on
};
