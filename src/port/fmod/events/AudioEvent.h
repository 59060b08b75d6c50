// AudioEvent: one instance of an authored event.
#pragma once

#include "port/fmod/events/AudioParameter.h"
#include "port/fmod/events/EventPlan.h"
#include "port/fmod/events/LayerVoice.h"
#include "port/fmod/events/SmoothedPath.h"
#include "port/fmod/output/Source.h"

#include <vector>

namespace port
{

/// Keeps what was asked of it and where it is in time; what is heard of it is the mixer's affair at the next update.
///
/// Made by a group and given back by release; the system then frees it. After its project's end it knows nothing more
/// and answers FMOD_ERR_INVALID_HANDLE.
class AudioEvent : public FMOD::Event
{
public:
    explicit AudioEvent(EventPlan &plan);

    FMOD_RESULT start() override;
    FMOD_RESULT stop(bool immediate) override;
    FMOD_RESULT setPaused(bool newPaused) override;
    FMOD_RESULT getPaused(bool *pausedOut) override;
    FMOD_RESULT setVolume(float newVolume) override;
    FMOD_RESULT getVolume(float *volumeOut) override;
    FMOD_RESULT set3DAttributes(const FMOD_VECTOR *newPosition, const FMOD_VECTOR *velocity,
                                const FMOD_VECTOR *orientation) override;
    FMOD_RESULT set3DOcclusion(float directOcclusion, float reverbOcclusion) override;
    FMOD_RESULT getState(FMOD_EVENT_STATE *state) override;
    FMOD_RESULT getNumParameters(int *count) override;
    FMOD_RESULT getParameterByIndex(int index, FMOD::EventParameter **parameter) override;
    FMOD_RESULT getParameter(const char *name, FMOD::EventParameter **parameter) override;
    FMOD_RESULT release() override;

    FMOD_RESULT tellPath(const SoundPath &path);
    /// Ends it at once and parts it from its project, which goes.
    void orphan();
    bool isReleased() const { return released; }
    /// Lets time pass: fades, glides, samples that end and those that follow.
    void advance(double seconds, const GlideStep &step, Chance &chance);

    bool isOrphan() const { return plan == nullptr; }
    bool isUnderWay() const { return state != IDLE; }
    /// Paused, by itself or its category.
    bool isHeld() const;
    /// Loudness at the listener, linear, of its loudest layer.
    float loudness() const;
    /// Loudness a metre away, linear, whoever listens: as authored, and as its parameters but the distance make it.
    float loudnessAtAMetre() const;
    /// Layers that sound now.
    int countSounding() const;
    /// How a layer is to sound, but for what the whole output does.
    SourceSettings settingsOf(const LayerVoice &voice) const;
    FMOD_VECTOR apparentPosition() const { return path.apparent(position); }

    EventPlan &getPlan() const { return *plan; }
    std::vector<LayerVoice> &getVoices() { return voices; }
    unsigned int getStartOrder() const { return startOrder; }

    bool chosen = false; ///< by the mixer, to be heard

private:
    enum State
    {
        IDLE,
        PLAYING,
        STOPPING ///< fades out
    };
    void beginVoices(Chance &chance);
    void leaveSources();
    void end();
    void applyCurves();
    void moveFade(double seconds);
    void moveVoices(double seconds, Chance &chance);
    void moveTension(double seconds);
    bool wantsTension(const LayerPlan &layer) const;

    EventPlan *plan; ///< null after its project's end
    std::vector<LayerVoice> voices;
    std::vector<AudioParameter> parameters;
    bool parametersChanged = true;
    State state = IDLE;
    bool beginning = false; ///< started, and not yet advanced
    bool paused = false;
    bool released = false;
    float volume = 1;
    FMOD_VECTOR position;
    float directShare = 1, reverbShare = 1; ///< of what occlusion leaves
    SmoothedPath path;
    float fade = 0;         ///< 0..1, of its start and stop
    float curveVolume = 1;  ///< by parameters' curves for the whole event
    float curveLowpass = 1; ///< gain of the filter
    float curveSend = 1;
    float curvePitch = 1; ///< factor
    double elapsed = 0;   ///< s of music, for its beats
    unsigned int startOrder = 0;
};

} // namespace port
