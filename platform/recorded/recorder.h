// What the recorded back ends write with: stamps each record with the runtime's time and the calling thread.
#pragma once

#include "blackbox/format.h"
#include "blackbox/ring_writer.h"
#include "platform/api/runtime.h"

#include <functional>
#include <initializer_list>
#include <thread>

namespace lumbrine {

class Recorder {
public:
    // Both outlive it.
    Recorder(const Runtime& timeSource, blackbox::RingWriter& writer) : runtime(timeSource), ring(writer) {}

    // Any thread; see RingWriter::write.
    void note(blackbox::Kind kind, std::uint8_t channel, std::initializer_list<ByteView> payload) const {
        ring.write({now(), threadNumber()}, kind, channel, payload);
    }

    // For kinds whose channel is one of a list of events.
    template <typename Event>
        requires std::is_enum_v<Event>
    void note(blackbox::Kind kind, Event event, std::initializer_list<ByteView> payload) const {
        note(kind, static_cast<std::uint8_t>(event), payload);
    }

    std::int64_t now() const { return runtime.now().time_since_epoch().count(); }
    std::uint64_t position() const { return ring.position(); }

private:
    static std::uint32_t threadNumber() {
        const std::size_t hash = std::hash<std::thread::id>{}(std::this_thread::get_id());
        return static_cast<std::uint32_t>(hash ^ hash >> 32);
    }

    const Runtime& runtime;
    blackbox::RingWriter& ring;
};

} // namespace lumbrine
