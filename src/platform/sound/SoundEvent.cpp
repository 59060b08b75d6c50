#include "platform/sound/SoundEvent.h"

#include "platform/sound/FmodVector.h"
#include "platform/sound/GlobalListener.h"
#include "platform/sound/SoundMessages.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"
#include "object/messages/PostOffice.h"
#include "object/reflection/SavedArguments.h"
#include "physics/bodies/PhysicsComponent.h"

#include "foundation/Finite.h"
#include "port/fmod/FmodExtras.h"

namespace
{
const String distanceName = SCS("distance");

/// The rotated z axis: the third column of the rotation's matrix, without the rest of it.
Vec4 facing(const Quaternion &q)
{
    return Vec4(2 * (q.i * q.k + q.r * q.j), 2 * (q.j * q.k - q.r * q.i), 1 - 2 * (q.i * q.i + q.j * q.j), 0);
}
} // namespace

void SoundEvent::initializeParams()
{
    params.clear();
    int count = 0;
    if (pEvent_)
        pEvent_->getNumParameters(&count);
    for (int i = 0; i < count; ++i)
    {
        FMOD::EventParameter *param = nullptr;
        char *name = nullptr;
        pEvent_->getParameterByIndex(i, &param);
        if (param && param->getInfo(nullptr, &name) == FMOD_OK && name)
            params.insert(String::copyFrom(name), SoundParameter(param));
    }
    const SoundParameter *const distance = params.find(distanceName);
    distance_ = distance ? *distance : SoundParameter();
}

SoundEvent::Moment SoundEvent::getMoment() const
{
    Moment moment;
    moment.isPlaying = isPlaying();
    for (const auto &[each, param] : params)
        moment.values.emplace_back(each, param.getValue());
    return moment;
}

void SoundEvent::renew(const SoundEvent &fresh, const Moment &before)
{
    way.end();
    if (pEvent_)
        pEvent_->release();
    pEvent_ = fresh.pEvent_;
    loops = fresh.loops;
    initializeParams();
    for (const auto &[each, value] : before.values)
        if (SoundParameter *const param = params.find(each))
            param->SetParam(value);
    applyVolume();
    applyPause();
    if (placed)
        place(eventPosition);
    if (before.isPlaying && loops)
        start();
}

void SoundEvent::updateEvent(const GlobalListener &listener)
{
    if (objectChanges != ObjectMap().getChangeCount() || found != hEntity)
        findEntity();
    if (takePlace())
    {
        const FMOD_VECTOR position = toFmod(eventPosition), velocity = toFmod(eventVelocity),
                          orientation = toFmod(eventOrientation);
        pEvent_->set3DAttributes(&position, &velocity, &orientation);
    }
    updateParams(listener);
    followWay();
}

void SoundEvent::updateParams(const GlobalListener &listener)
{
    distance_.SetParam((eventPosition - listener.position).magnitude());
}

/// Whether the entity has a place, which the event has taken over.
bool SoundEvent::takePlace()
{
    if (!pEvent_ || placed || !transform || !isFinite(transform->getPosition()))
        return false;
    eventPosition = transform->getPosition();
    if (isFinite(transform->getOrientation()))
        eventOrientation = facing(transform->getOrientation());
    eventVelocity = body && isFinite(body->getVelocity()) ? body->getVelocity() : Vec4();
    return true;
}

/// Has a sound that plays come by its way through the map, whose length counts as its distance.
void SoundEvent::followWay()
{
    if (!distance_.exists() || !isPlaying())
        return way.end();
    if (const HeardWay *const bent = way.follow(*pEvent_, eventPosition))
        distance_.SetParam(bent->distance);
}

void SoundEvent::findEntity()
{
    transform = componentOf<TransformComponent>(hEntity, ComponentKeys::transform);
    body = componentOf<PhysicsComponent>(hEntity, ComponentKeys::physics);
    if (hEntity.isValid())
        way.chooseMap(hEntity);
    found = hEntity;
    objectChanges = ObjectMap().getChangeCount();
}

void SoundEvent::tellMade()
{
    if (!pEvent_ || !isInWorld())
        return;
    if (objectChanges != ObjectMap().getChangeCount() || found != hEntity)
        findEntity();
    takePlace();
    Vec4 place = eventPosition;
    place.w = volume * port::loudnessAtAMetre(*pEvent_);
    SavedArguments payload = SavedArguments::of(name, place, Handle<Object>(hEntity));
    PostOffice().submitMessage(SoundMadeMessage, payload);
}

void SoundEvent::start()
{
    if (pEvent_)
        pEvent_->start();
}

void SoundEvent::stop()
{
    if (pEvent_)
        pEvent_->stop();
}

void SoundEvent::setPaused(bool paused)
{
    paused_ = paused;
    applyPause();
}

void SoundEvent::setHeld(bool val)
{
    if (held == val)
        return;
    held = val;
    applyPause();
}

void SoundEvent::applyPause()
{
    if (pEvent_)
        pEvent_->setPaused(isPaused());
}

void SoundEvent::setVolume(float vol)
{
    volume = vol;
    applyVolume();
}

void SoundEvent::setKindVolume(float vol)
{
    kindVolume = vol;
    applyVolume();
}

void SoundEvent::applyVolume()
{
    if (pEvent_)
        pEvent_->setVolume(volume * kindVolume);
}

void SoundEvent::setEntity(Handle<Entity> entity)
{
    hEntity = entity;
    placed = false;
}

void SoundEvent::place(Vec4 position)
{
    if (!isFinite(position))
        return;
    placed = true;
    eventPosition = position;
    eventVelocity = Vec4();
    const FMOD_VECTOR at = toFmod(position), still;
    if (pEvent_)
        pEvent_->set3DAttributes(&at, &still);
}

void SoundEvent::release()
{
    if (FMOD::Event *const event = detach())
        event->release();
}

FMOD::Event *SoundEvent::detach()
{
    way.end();
    FMOD::Event *const event = pEvent_;
    *this = SoundEvent();
    return event;
}

bool SoundEvent::isPlaying() const
{
    FMOD_EVENT_STATE state = 0;
    if (pEvent_)
        pEvent_->getState(&state);
    return state & (FMOD_EVENT_STATE_PLAYING | FMOD_EVENT_STATE_CHANNELSACTIVE);
}
