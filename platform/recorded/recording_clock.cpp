#include "platform/recorded/recording_clock.h"

#include <utility>

namespace lumbrine {

namespace {

constexpr std::int64_t corrections = 1'000'000'000; // that a clock gets from the network's time are smaller

} // namespace

void RecordingClock::tick() {
    const std::int64_t before = std::exchange(lastLead, lead());
    if (lastLead < before - corrections) backwards = true;
    if (recorder.position() != noted) note(blackbox::AnchorCause::periodic);
}

std::int64_t RecordingClock::lead() const {
    return wall() - recorder.now();
}

void RecordingClock::note(blackbox::AnchorCause cause) {
    const blackbox::AnchorHead head{.wallTime = wall(), .process = process};
    recorder.note(blackbox::Kind::anchor, cause, {blackbox::bytesOf(head), blackbox::textBytes(text)});
    noted = recorder.position();
}

} // namespace lumbrine
