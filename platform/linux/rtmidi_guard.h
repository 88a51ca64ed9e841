// Keeps RtMidi's exceptions and its messages on standard error away from callers.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/linux/rtmidi_services.h"

#include <RtMidi.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <string>

namespace lumbrine {

inline RtMidi::Api apiOf(RtMidiSystem system) {
    return system == RtMidiSystem::alsa ? RtMidi::LINUX_ALSA : RtMidi::UNIX_JACK;
}

// Runs `work`. Returns 0, or RtMidi's error type when it throws; -EIO for types that RtMidi numbers below 1.
inline MIDIStatus guarded(const std::function<void()>& work) {
    try {
        work();
    } catch (const RtMidiError& error) {
        const auto kind = static_cast<MIDIStatus>(error.getType());
        return kind > 0 ? kind : -EIO;
    }
    return 0;
}

// Records errors that RtMidi would otherwise print or throw.
class RtMidiErrors {
public:
    void listenTo(RtMidi& object) {
        object.setErrorCallback(
            [](RtMidiError::Type type, const std::string& /*text*/, void* self) {
                if (type != RtMidiError::WARNING && type != RtMidiError::DEBUG_WARNING)
                    static_cast<RtMidiErrors*>(self)->last = static_cast<MIDIStatus>(type);
            },
            this);
    }

    // Returns the last error since the previous call; 0 when there was none.
    MIDIStatus take() { return last.exchange(0); }

private:
    std::atomic<MIDIStatus> last{0};
};

} // namespace lumbrine
