// Drawing soon, but not for every change.
#pragma once

#include "platform/api/runtime.h"

#include <functional>
#include <memory>

namespace lumbrine {

// Draws once for all changes since the last time, at most 30 times a second. Main thread.
class DrawPace {
public:
    static constexpr Duration interval = seconds(1.0 / 30);

    DrawPace(Runtime& rt, std::function<void()> drawNow);

    // Something has changed. Never draws from within; nothing is drawn once this object is gone.
    void changed();

private:
    Runtime& runtime;
    const std::function<void()> draw;
    TimePoint last = distantPast;
    bool planned = false;
    const std::shared_ptr<const int> life = std::make_shared<int>(0);
};

} // namespace lumbrine
