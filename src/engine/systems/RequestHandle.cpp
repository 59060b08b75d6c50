#include "engine/systems/RequestHandle.h"

#include <atomic>

RequestHandle getNextRequestHandle()
{
    static std::atomic<RequestHandle> last{0};
    RequestHandle next = ++last;
    // After four thousand million requests the counter wraps; 0 stays "no request".
    while (next == 0)
        next = ++last;
    return next;
}
