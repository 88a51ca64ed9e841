// Which of a sender's datagrams have come, so that each counts once; how late one is; and how many were lost.
#pragma once

#include "platform/api/time.h"
#include "seal/seal_trailer.h"

#include <cstdint>
#include <optional>

namespace lumbrine::seal {

// One session, one direction.
class SequenceWindow {
public:
    // The newest datagram and the 63 before it are known one by one. Older ones are refused.
    static constexpr std::uint32_t size = 64;

    struct Arrival {
        bool isNewest = false;

        // How much longer it was under way than the quickest datagram since the last `setTime`, to 1/8 s. Only the
        // sender's clock and this end's are compared, each with itself, so neither need be right.
        Duration late{};
    };

    // Counts a datagram whose seal is right. Absent, and without any effect, when it has come before, is too old, or
    // has count 0.
    std::optional<Arrival> admit(Sequence sequence, TimePoint now);

    // The newest datagram counts as in time, as one is that its sender has made after a pause.
    void setTime(TimePoint now) { quickest = underWay(now, sentAt); }

    std::uint32_t newestCount() const { return newest; }

    // Of those up to the newest.
    std::uint32_t received() const { return arrived; }
    std::uint32_t lost() const { return newest - arrived; }

private:
    std::int64_t whenSent(Sequence sequence) const;
    static Duration underWay(TimePoint now, std::int64_t sent); // from an unknown common beginning

    std::uint32_t newest = 0;
    std::uint64_t seen = 0; // bit n: the n-th before the newest
    std::uint32_t arrived = 0;
    std::int64_t sentAt = 0; // the newest, in the sender's eighths of a second, without modulo
    Duration quickest = Duration::max();
};

} // namespace lumbrine::seal
