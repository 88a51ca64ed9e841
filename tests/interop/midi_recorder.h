// For tests: records the events received on a MIDI thread.
#pragma once

#include "base/bytes.h"
#include "tests/interop/waiting.h"

#include <functional>
#include <mutex>
#include <set>
#include <vector>

namespace lumbrine::interop {

class MIDIRecorder {
public:
    void add(ByteView event) {
        const std::lock_guard lock(mutex);
        recorded.emplace_back(event.begin(), event.end());
    }

    // Waits for at least `count` events, but not for ever. Returns the events so far.
    std::vector<Bytes> waitFor(std::size_t count) {
        waitUntil([&] { return size() >= count; });
        const std::lock_guard lock(mutex);
        return recorded;
    }

    // The different events so far.
    std::set<Bytes> kinds() {
        const std::lock_guard lock(mutex);
        return {recorded.begin(), recorded.end()};
    }

    std::size_t size() {
        const std::lock_guard lock(mutex);
        return recorded.size();
    }

    void clear() {
        const std::lock_guard lock(mutex);
        recorded.clear();
    }

    // The callback for MIDIConnections and MIDIServices. The recorder must outlive them.
    std::function<void(ByteView)> asReceiver() {
        return [this](ByteView event) { add(event); };
    }

private:
    std::mutex mutex;
    std::vector<Bytes> recorded;
};

} // namespace lumbrine::interop
