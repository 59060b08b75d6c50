// HeadTurn: how far something that turns like a head comes in a time.
#pragma once

/// A turn under way: the angle that is left, and how fast it shrinks.
///
/// Radians, seconds. It gains speed and loses it evenly, so that it starts and ends slowly, and never passes its end.
/// The way is found in closed form: how the time is cut into frames makes no difference.
struct HeadTurn
{
    double left = 0;  ///< 0 or more
    double speed = 0; ///< below 0 where it still turns away

    /// Turns for a time.
    /// @param fastest    radians a second; above 0
    /// @param quickening  radians a second squared, by which it gains speed and loses it; above 0, infinite for at once
    void advance(double seconds, double fastest, double quickening);

private:
    void drive(double &seconds, double duration, double quickening);
    void brake(double seconds, double quickening);
};
