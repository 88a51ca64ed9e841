#include "platform/posix/os_thread.h"

#include <utility>

namespace lumbrine {

namespace {

thread_local Urgency current = Urgency::normal;

} // namespace

void setUrgency(Urgency urgency) {
    if (std::exchange(current, urgency) != urgency) applyUrgency(urgency);
}

Urgency urgencyOfThisThread() {
    return current;
}

} // namespace lumbrine
