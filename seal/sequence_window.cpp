#include "seal/sequence_window.h"

#include <algorithm>

namespace lumbrine::seal {

std::optional<SequenceWindow::Arrival> SequenceWindow::admit(Sequence sequence, TimePoint now) {
    if (sequence.count == 0) return std::nullopt;
    const bool isNewest = sequence.count > newest;
    const std::uint32_t distance = isNewest ? sequence.count - newest : newest - sequence.count;
    if (!isNewest && (distance >= size || (seen >> distance & 1) != 0)) return std::nullopt;

    const std::int64_t sent = whenSent(sequence);
    if (isNewest) {
        seen = distance < size ? seen << distance : 0;
        seen |= 1;
        newest = sequence.count;
        sentAt = sent;
    } else {
        seen |= std::uint64_t{1} << distance;
    }
    ++arrived;
    const Duration taken = underWay(now, sent);
    quickest = std::min(quickest, taken);
    return Arrival{.isNewest = isNewest, .late = taken - quickest};
}

// A later count was not sent earlier, and the two lie less than 128 s apart.
std::int64_t SequenceWindow::whenSent(Sequence sequence) const {
    const auto newestTime = static_cast<std::uint32_t>(sentAt) % Sequence::timeSteps;
    constexpr std::uint32_t wrap = Sequence::timeSteps - 1;
    if (sequence.count > newest) return sentAt + ((sequence.time - newestTime) & wrap);
    return sentAt - ((newestTime - sequence.time) & wrap);
}

Duration SequenceWindow::underWay(TimePoint now, std::int64_t sent) {
    return now.time_since_epoch() - sent * Sequence::timeStep;
}

} // namespace lumbrine::seal
