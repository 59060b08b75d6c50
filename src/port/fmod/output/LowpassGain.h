// LowpassGain: cut-off frequencies as the gains of the output's filter.
#pragma once

namespace port
{

/// From here on a low-pass takes nothing away.
constexpr float OPEN_LOWPASS = 22000; ///< Hz

/// AL_LOWPASS_GAINHF of a filter whose loudness falls by 3 dB at a cut-off.
///
/// The library's low-pass is a high shelf around 5 kHz. Measured on 1.19 with sines through a loopback device: its
/// high end lies at the square of the gain, half way there at 5 kHz, falling by 12 dB an octave, so that the corner
/// lies at 5 kHz times the root of the gain; gains below 0.001 count as that. Gains of filters in a row multiply.
/// @param cutoff  Hz; OPEN_LOWPASS and above give 1
float lowpassGain(float cutoff);

/// The least gain that still makes a difference.
constexpr float LEAST_LOWPASS_GAIN = 0.001F;

} // namespace port
