// Limits how often the screen is drawn.
#pragma once

#include "platform/api/runtime.h"

#include <functional>
#include <memory>

namespace lumbrine {

// Draws once for all changes since the last drawing, at most 30 times a second. Main thread.
class DrawPace {
public:
    static constexpr Duration interval = seconds(1.0 / 30);

    DrawPace(Runtime& runtime, std::function<void()> draw);

    // Reports a change; the drawing follows later, never inside this call and never after this object is destroyed.
    void changed();

private:
    Runtime& runtime;
    const std::function<void()> draw;
    TimePoint last = distantPast;
    bool planned = false;
    const std::shared_ptr<const int> life = std::make_shared<int>(0);
};

} // namespace lumbrine
