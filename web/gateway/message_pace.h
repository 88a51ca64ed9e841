// Whether a browser sends messages faster than a client does.
#pragma once

#include "platform/api/time.h"

namespace lumbrine::web {

// Counts in windows of a second; the first message after a window opens the next one.
class MessagePace {
public:
    static constexpr int messagesPerSecond = 2'000;

    // Counts one message. False when it is one too many.
    bool admits(TimePoint now) {
        if (now - windowBegin >= seconds(1)) {
            windowBegin = now;
            count = 0;
        }
        return ++count <= messagesPerSecond;
    }

private:
    TimePoint windowBegin = distantPast;
    int count = 0;
};

} // namespace lumbrine::web
