// FrameLimiter: how long to wait so that frames come no faster than a rate.
#pragma once

/// Keeps the times at which frames are due; counts seconds and never waits itself.
///
/// A wait that ends late is made up by a shorter one, so that the rate holds on average. A frame that comes late itself
/// is not made up: the rhythm begins anew with it.
class FrameLimiter
{
public:
    /// Frames a second from the next frame on; 0 for no limit.
    void setRate(double framesPerSecond);
    double getRate() const { return rate; }
    /// Seconds to wait before the next frame begins, for a frame that ends now; 0 without a limit.
    double waitAfter(double now);

private:
    double rate = 0;
    double due = 0; ///< when the next frame may begin, seconds
};
