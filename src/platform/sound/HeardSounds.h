// HeardSounds: what can be heard now, for captions and for whoever asks.
#pragma once

#include "foundation/KVString.h"
#include "foundation/Vector.h"
#include "port/fmod/FmodExtras.h"

#include <vector>

class Variant;
struct GlobalListener;

/// A sound that can be heard now.
struct HeardSound
{
    String name;        ///< of the event
    String caption;     ///< empty where it has none, or is too soft to be told of
    Vec4 direction;     ///< from the ears, to the right, up and ahead, length 1; 0 for what has no place
    float distance = 0; ///< metres, along the way that it comes; 0 for what has no place
    float loudness = 0; ///< linear, at the ears
};

/// How it crosses the reflection layer: as the script class `HeardSound`.
void SetToVariant(Variant &v, const HeardSound &sound);

/// Follows what the audio library can be heard with, frame by frame, and tells by message what is to be captioned.
///
/// A sound is told of once a start, and again when it has been too soft for as long as `FORGET_FRAMES`.
class HeardSounds
{
public:
    static constexpr int FORGET_FRAMES = 90;

    /// Takes over what is heard in this frame, and sends SoundHeardMessage for what is new of it.
    void update(FMOD::EventSystem &system, const GlobalListener &listener);
    /// What is heard, the loudest first.
    std::vector<HeardSound> list(const GlobalListener &listener) const;

private:
    /// A sound whose caption was told.
    struct Told
    {
        const FMOD::Event *event;
        unsigned startOrder;
        int framesSoft; ///< since it was loud enough
    };

    bool tell(const port::HeardEvent &sound);

    std::vector<port::HeardEvent> heard; ///< the loudest first
    std::vector<port::HeardEvent> fresh; ///< of this frame, to be told
    std::vector<Told> told;
};
