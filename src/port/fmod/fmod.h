// fmod: the low-level audio system, implemented on OpenAL by this folder.
//
// Operations carry their published names, argument orders and meaning; a subset is declared. Every interface is
// abstract, so that a test can put a recording or failing one in its place. Left-handed coordinates, y up, metres.
#pragma once

namespace FMOD
{
class DSP;
class System;
} // namespace FMOD

enum FMOD_RESULT
{
    FMOD_OK,
    FMOD_ERR_FILE_BAD,
    FMOD_ERR_FILE_NOTFOUND,
    FMOD_ERR_FORMAT,
    FMOD_ERR_INITIALIZED,
    FMOD_ERR_INVALID_FLOAT,
    FMOD_ERR_INVALID_HANDLE,
    FMOD_ERR_INVALID_PARAM,
    FMOD_ERR_OUTPUT_INIT,
    FMOD_ERR_UNINITIALIZED,
    FMOD_ERR_UNSUPPORTED,
    FMOD_ERR_EVENT_FAILED,
    FMOD_ERR_EVENT_NOTFOUND
};

/// Where the listener's loudspeakers stand.
enum FMOD_SPEAKERMODE
{
    FMOD_SPEAKERMODE_RAW,
    FMOD_SPEAKERMODE_MONO,
    FMOD_SPEAKERMODE_STEREO,
    FMOD_SPEAKERMODE_QUAD,
    FMOD_SPEAKERMODE_SURROUND,
    FMOD_SPEAKERMODE_5POINT1,
    FMOD_SPEAKERMODE_7POINT1
};

enum FMOD_DSP_TYPE
{
    FMOD_DSP_TYPE_UNKNOWN,
    FMOD_DSP_TYPE_MIXER,
    FMOD_DSP_TYPE_OSCILLATOR,
    FMOD_DSP_TYPE_LOWPASS
};

/// Parameters of FMOD_DSP_TYPE_LOWPASS.
enum FMOD_DSP_LOWPASS
{
    FMOD_DSP_LOWPASS_CUTOFF,   ///< Hz, 10..22000
    FMOD_DSP_LOWPASS_RESONANCE ///< 1..10; taken and without effect here
};

using FMOD_CAPS = unsigned int;
using FMOD_INITFLAGS = unsigned int;

constexpr FMOD_INITFLAGS FMOD_INIT_NORMAL = 0x00;
constexpr FMOD_INITFLAGS FMOD_INIT_3D_RIGHTHANDED = 0x02;

struct FMOD_VECTOR
{
    float x = 0;
    float y = 0;
    float z = 0;
};

/// A room's reverberation, by the published names of its figures.
struct FMOD_REVERB_PROPERTIES
{
    int Room = -10000;          ///< loudness of the whole, hundredths of a decibel, -10000..0
    int RoomHF = 0;             ///< the same for high frequencies, relative, -10000..0
    float DecayTime = 1;        ///< s, 0.1..20
    float DecayHFRatio = 0.5F;  ///< share of it for high frequencies, 0.1..2
    int Reflections = -10000;   ///< early reflections, hundredths of a decibel, -10000..1000
    float ReflectionsDelay = 0; ///< s, 0..0.3
    int Reverb = 0;             ///< late reverberation, hundredths of a decibel, -10000..2000
    float ReverbDelay = 0.01F;  ///< s, 0..0.1
    float Diffusion = 100;      ///< percent
    float Density = 100;        ///< percent
};

namespace FMOD
{

/// An effect on all that is heard.
class DSP
{
public:
    virtual ~DSP() = default;
    virtual FMOD_RESULT setParameter(int index, float value) = 0;
    virtual FMOD_RESULT setBypass(bool bypass) = 0;
    virtual FMOD_RESULT getBypass(bool *bypass) = 0;
    /// Frees it; what it did to the sound ends.
    virtual FMOD_RESULT release() = 0;
};

/// The device that is heard, and what all sounds pass through.
class System
{
public:
    virtual ~System() = default;
    virtual FMOD_RESULT getDriverCaps(int id, FMOD_CAPS *caps, int *controlPanelOutputRate,
                                      FMOD_SPEAKERMODE *controlPanelSpeakerMode) = 0;
    /// Before EventSystem::init alone.
    virtual FMOD_RESULT setSpeakerMode(FMOD_SPEAKERMODE mode) = 0;
    virtual FMOD_RESULT set3DSettings(float dopplerScale, float distanceFactor, float rollOffScale) = 0;
    virtual FMOD_RESULT createDSPByType(FMOD_DSP_TYPE type, DSP **dsp) = 0;
    /// Lets all that is heard pass through the effect; `connection` may be null and stays untouched.
    virtual FMOD_RESULT addDSP(DSP *dsp, void **connection) = 0;
    virtual FMOD_RESULT setReverbAmbientProperties(const FMOD_REVERB_PROPERTIES *properties) = 0;
    virtual FMOD_RESULT release() = 0;
};

} // namespace FMOD
