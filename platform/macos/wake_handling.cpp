#include "platform/macos/wake_handling.h"

namespace lumbrine {

void WakeHandling::willSleep() {
    waking.reset();
}

void WakeHandling::didWake() {
    waking = std::make_shared<int>(0);
    look(true);
    for (const Duration after : looks) {
        if (after == Duration::zero()) continue;
        runtime.postMainAfter(after, [this, alive = std::weak_ptr(waking)] {
            if (!alive.expired()) look(false);
        });
    }
}

void WakeHandling::look(bool first) {
    const bool another = actions.readAddress();
    if (another || first) actions.announceAgain();
}

} // namespace lumbrine
