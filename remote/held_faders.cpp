#include "remote/held_faders.h"

#include "remote/command_builder.h"

#include <utility>

namespace lumbrine::remote {

HeldFaders::HeldFaders(Runtime& runtime, std::function<void(ByteView)> send)
    : runtime(runtime), send(std::move(send)) {}

void HeldFaders::touch(Strip strip) {
    held[strip.slot()] = true;
    send(faderTouchCommand(strip));
    later(strip, touchInterval, [this, strip] { touch(strip); });
}

void HeldFaders::release(Strip strip) {
    held[strip.slot()] = false;
    sendRelease(strip, releases);
}

void HeldFaders::sendRelease(Strip strip, int times) {
    send(faderReleaseCommand(strip));
    if (times > 1) later(strip, releaseInterval, [this, strip, times] { sendRelease(strip, times - 1); });
}

void HeldFaders::releaseAll() {
    for (int i = 0; i < stripCount; ++i) {
        const Strip strip = *Strip::of(i);
        if (held[strip.slot()]) send(faderReleaseCommand(strip));
    }
    forget();
}

void HeldFaders::forget() {
    held.fill(false);
    for (std::uint64_t& number : *newest)
        ++number;
}

void HeldFaders::later(Strip strip, Duration delay, std::function<void()> job) {
    const std::uint64_t number = ++(*newest)[strip.slot()];
    runtime.postMainAfter(delay, [strip, number, job = std::move(job), numbers = std::weak_ptr(newest)] {
        const auto alive = numbers.lock();
        if (alive && (*alive)[strip.slot()] == number) job();
    });
}

} // namespace lumbrine::remote
