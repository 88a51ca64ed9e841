// A thread sleeps on a bell until there is something to do. Any thread may ring it, a realtime thread included.
#pragma once

#include "platform/api/time.h"

#include <semaphore.h>

namespace lumbrine {

// Several rings before a wait wake that wait once.
class Bell {
public:
    Bell();
    ~Bell();
    Bell(const Bell&) = delete;
    Bell& operator=(const Bell&) = delete;

    // Any thread; never waits.
    void ring();

    // Waits for a ring. Returns at once when the bell was rung after the last wait. Only one thread may wait at a time.
    void wait();

    // Like `wait`, but returns after `limit` at the latest.
    void waitFor(Duration limit);

private:
    void forgetRings();

    sem_t semaphore{};
};

} // namespace lumbrine
