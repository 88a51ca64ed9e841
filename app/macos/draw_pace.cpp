#include "app/macos/draw_pace.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

DrawPace::DrawPace(Runtime& runtime, std::function<void()> draw) : runtime(runtime), draw(std::move(draw)) {}

void DrawPace::changed() {
    if (std::exchange(planned, true)) return;
    const Duration wait = std::max(Duration::zero(), last + interval - runtime.now());
    runtime.postMainAfter(wait, [this, alive = std::weak_ptr(life)] {
        if (alive.expired()) return;
        planned = false;
        last = runtime.now();
        draw();
    });
}

} // namespace lumbrine
