#include "CommandThrottle.h"

bool CommandThrottle::allow(Clock::time_point now) {
    if (last && now - *last < gap)
        return false;
    last = now;
    return true;
}
