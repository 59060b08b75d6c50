#include "tools/bars/PlaceLines.h"

#include "tools/bars/BarParams.h"
#include "tools/bars/BarValues.h"
#include "tools/bars/TweakSystem.h"
#include "tools/editor/RigidMove.h"

#include "engine/transforms/TransformComponent.h"
#include "object/reflection/SavedArguments.h"
#include "port/tweakbar/TweakBar.h"

#include "foundation/Finite.h"

#include <cstring>
#include <utility>

namespace
{
constexpr const char *HEADING = "Place";

Vec4 vectorOf(const void *value, float w)
{
    const float *f = static_cast<const float *>(value);
    return Vec4(f[0], f[1], f[2], w);
}
} // namespace

PlaceLines::PlaceLines(const Handle<Object> &entity, const Handle<TransformComponent> &transform)
    : entity(entity), transform(transform), move(std::make_unique<RigidMove>())
{
}

PlaceLines::~PlaceLines() = default;

void PlaceLines::addTo(TwBar *bar)
{
    const auto finished = [](void *self) { static_cast<Line *>(self)->owner->finish(*static_cast<Line *>(self)); };
    TwAddVarCB(bar, "stands place", TW_TYPE_VEC3F, &setPlace, &getVector, &place);
    TwAddVarCB(bar, "stands turn", TW_TYPE_QUAT4F, &setTurn, &getTurn, &turn);
    TwAddVarCB(bar, "stands scale", TW_TYPE_VEC3F, &setScale, &getVector, &scale);
    for (const char *line : {"stands place", "stands turn", "stands scale"})
    {
        BarParams::setText(bar, line, "group", String::fromStaticCString(HEADING));
        // Without its first word, by which no property has the same name.
        BarParams::setText(bar, line, "label", String::fromStaticCString(std::strchr(line, ' ') + 1));
        TwSetEditedCB(bar, line, finished);
    }
    BarParams::setText(bar, "stands place", "help", SCS("x, y and z in metres. What hangs on it comes along."));
    BarParams::setText(bar, "stands turn", "help", SCS("Pitch about x, turn about y, roll about z, degrees."));
    BarParams::setText(bar, "stands scale", "help", SCS("Along its own axes."));
}

Variant PlaceLines::read(const char *property) const
{
    const auto live = transform.lookup();
    return live ? live->getPropertyValue(String::copyFrom(property)).value : Variant();
}

void PlaceLines::begin(const Line &line)
{
    if (isBegun)
        return;
    isBegun = true;
    before = read(line.property);
    placeBefore = transform.lookup()->getPosition();
    turnBefore = transform.lookup()->getOrientation();
    move->take(entity);
}

void PlaceLines::finish(const Line &line)
{
    if (!std::exchange(isBegun, false))
        return; // what was typed was refused
    move->clear();
    if (transform.isValid())
        getSystemDeref<TweakSystem>().tellEdited(transform, String::copyFrom(line.property), before,
                                                 read(line.property));
}

void PlaceLines::setPlace(const void *value, void *self)
{
    const Line &line = *static_cast<const Line *>(self);
    const Vec4 wanted = vectorOf(value, 1.f);
    const auto live = line.owner->transform.lookup();
    if (!live || !isFinite(wanted))
        return;
    PlaceLines &lines = *line.owner;
    lines.begin(line);
    RigidMotion motion;
    motion.by = wanted - lines.placeBefore;
    motion.pivot = lines.placeBefore;
    lines.move->apply(motion);
}

void PlaceLines::setTurn(const void *value, void *self)
{
    const Line &line = *static_cast<const Line *>(self);
    const auto live = line.owner->transform.lookup();
    if (!live)
        return;
    PlaceLines &lines = *line.owner;
    lines.begin(line);
    RigidMotion motion;
    motion.turn = BarValues::fromBar<Quaternion>(value) * lines.turnBefore.inverse();
    motion.pivot = lines.placeBefore;
    lines.move->apply(motion);
}

void PlaceLines::setScale(const void *value, void *self)
{
    const Line &line = *static_cast<const Line *>(self);
    const auto live = line.owner->transform.lookup();
    const Vec4 wanted = vectorOf(value, live ? live->getScale().w : 0.f);
    if (!live || !isFinite(wanted))
        return;
    line.owner->begin(line);
    live->setScale(wanted);
}

void PlaceLines::getVector(void *value, void *self)
{
    const Line &line = *static_cast<const Line *>(self);
    const Variant read = line.owner->read(line.property);
    if (read.getType() != Variant::VT_VECTOR)
        return;
    const Vec4 &v = read.as<Vec4>();
    const float components[] = {v.x, v.y, v.z};
    std::memcpy(value, components, sizeof(components));
}

void PlaceLines::getTurn(void *value, void *self)
{
    const Variant read = static_cast<const Line *>(self)->owner->read("orientation");
    if (read.getType() == Variant::VT_QUATERNION)
        BarValues::toBar(read.as<Quaternion>(), value);
}
