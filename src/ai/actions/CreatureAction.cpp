#include "ai/actions/CreatureAction.h"

#include "ai/paths/PathFollower.h"
#include "ai/paths/Walkways.h"
#include "ai/perception/PerceptionComponent.h"
#include "ai/steering/SteeringComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Logger.h"
#include "foundation/Random.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr int TRIES = 8;               ///< places that chance is asked for
constexpr float SLIM = 0.35f;          ///< metres; room that a place is to leave
constexpr float TURN_SPEED = 2.5f;     ///< radians a second, of a head that looks about
constexpr float LOOK_ANGLE = 1.1f;     ///< radians to each side
constexpr float SECONDS_A_LOOK = 3.5f; ///< to both sides and back
} // namespace

void CreatureAction::reset()
{
    Action::reset();
    begun = false;
}

void CreatureAction::terminate()
{
    stop();
    Action::terminate();
}

const CreatureAction::Parts &CreatureAction::parts()
{
    const std::uint64_t changes = ObjectMap().getChangeCount();
    const Handle<Object> creature = getParent();
    if (known.objectChanges == changes && known.creature == creature)
        return known;
    known.transform = componentOf<TransformComponent>(creature, ComponentKeys::transform);
    known.follower = componentOf<PathFollower>(creature, ComponentKeys::pathFollower);
    known.senses = componentOf<PerceptionComponent>(creature, ComponentKeys::perception);
    known.steering = componentOf<SteeringComponent>(creature, ComponentKeys::steering);
    known.objectChanges = changes;
    known.creature = creature;
    return known;
}

Handle<MapRootEntity> CreatureAction::map()
{
    return getAncestorOfType<MapRootEntity>();
}

Vec4 CreatureAction::place()
{
    const TransformComponent *const transform = parts().transform;
    return transform ? transform->getPosition() : Vec4();
}

void CreatureAction::goTo(const Vec4 &where)
{
    PathFollower *const follower = parts().follower;
    if (!follower)
        return;
    if (speed > 0.f)
        follower->setSpeed(speed);
    follower->goTo(where);
}

void CreatureAction::stop()
{
    PathFollower *const follower = parts().follower;
    if (follower && begun)
        follower->stop();
}

CreatureAction::Legs CreatureAction::legs()
{
    const PathFollower *const follower = parts().follower;
    if (!follower || follower->getFailed())
        return STUCK;
    return follower->getUnderWay() ? ON_THE_WAY : THERE;
}

bool CreatureAction::isCalledOff()
{
    const PerceptionComponent *const senses = parts().senses;
    return heeds && senses && senses->getKnows();
}

bool CreatureAction::findPlace(const Vec4 &around, float least, float most, Vec4 &found)
{
    Walkways *const ways = Walkways::ofMap(map());
    for (int i = 0; ways && i < TRIES; ++i)
    {
        const float angle = randomFloat(0.f, 2.f * PI);
        const float distance = randomFloat(std::min(least, most), most);
        const Vec4 wanted = around + Vec4(std::sin(angle), 0.f, std::cos(angle), 0.f) * distance;
        const GridCell cell = ways->findFreeCell(wanted, SLIM);
        if (!cell.isValid())
            continue;
        const Vec4 station = ways->getStation(cell);
        const float off = std::hypot(station.x - around.x, station.z - around.z);
        if (off < least / 2.f || off > most * 1.5f)
            continue;
        found = Vec4(station.x, around.y, station.z, 1.f);
        return true;
    }
    return false;
}

void CreatureAction::turnTo(const Vec4 &direction, Seconds frameTime)
{
    TransformComponent *const transform = parts().transform;
    SteeringComponent *const steering = parts().steering;
    if (!transform || (direction.x == 0.f && direction.z == 0.f))
        return;
    if (steering && steering->getAlignMaxRotSpeed() > 0.f)
        return steering->updateAlignWithVector(direction, frameTime);
    const Vec4 front = transform->getOrientation().generateRotation().getColumn(2);
    const float now = std::atan2(front.x, front.z), wanted = std::atan2(direction.x, direction.z);
    const float most = TURN_SPEED * static_cast<float>(frameTime);
    const float turn = std::clamp(std::remainder(wanted - now, 2.f * PI), -most, most);
    if (std::isfinite(turn) && std::fabs(turn) > 1e-4f)
        transform->setOrientation(Quaternion(Vec4(std::sin(now + turn), 0.f, std::cos(now + turn), 0.f)));
}

void CreatureAction::lookAround(const Vec4 &ahead, Seconds frameTime)
{
    const float phase = static_cast<float>(std::fmod(elapsedTime, SECONDS_A_LOOK)) / SECONDS_A_LOOK;
    const float angle = std::atan2(ahead.x, ahead.z) + LOOK_ANGLE * std::sin(2.f * PI * phase);
    turnTo(Vec4(std::sin(angle), 0.f, std::cos(angle), 0.f), frameTime);
}

Handle<Action> CreatureAction::cloneCreatureAction() const
{
    const Handle<Action> copy = cloneAction();
    if (auto action = unchecked_handle_cast<CreatureAction>(copy).lookup())
    {
        action->speed = speed;
        action->reach = reach;
        action->heeds = heeds;
        action->duration = duration;
        action->actionName = actionName;
    }
    return copy;
}

void CreatureAction::setMeasure(float &field, const char *property, float val)
{
    if (val >= 0.f && std::isfinite(val))
        field = val;
    else
        KV_LOGF(Logger_::I_ERROR, "%s: %s is to be a number from 0 on, not %g", getType()->getName().toCString(),
                property, static_cast<double>(val));
}
