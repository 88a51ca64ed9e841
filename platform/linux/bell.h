// What a thread sleeps on until there is something to do; rung from anywhere, a realtime thread included.
#pragma once

#include "platform/api/time.h"

#include <semaphore.h>

namespace lumbrine {

// Ringing it several times before anybody waits wakes one wait, once.
class Bell {
public:
    Bell();
    ~Bell();
    Bell(const Bell&) = delete;
    Bell& operator=(const Bell&) = delete;

    // Any thread; never waits.
    void ring();

    // Returns when it is rung, at once when it was rung since the last wait. One thread at a time.
    void wait();

    // As `wait`, but returns after `limit` in any case.
    void waitFor(Duration limit);

private:
    void forgetRings();

    sem_t semaphore{};
};

} // namespace lumbrine
