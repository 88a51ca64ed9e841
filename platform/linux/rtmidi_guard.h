// RtMidi without its exceptions and without its messages on standard error.
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

// 0, or RtMidi's kind of error; -EIO for the kinds that it numbers below 1.
inline MIDIStatus guarded(const std::function<void()>& work) {
    try {
        work();
    } catch (const RtMidiError& error) {
        const auto kind = static_cast<MIDIStatus>(error.getType());
        return kind > 0 ? kind : -EIO;
    }
    return 0;
}

// Notes errors that RtMidi would else print or throw from whatever call it is in.
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

    // The last error since this was asked, 0 for none.
    MIDIStatus take() { return last.exchange(0); }

private:
    std::atomic<MIDIStatus> last{0};
};

} // namespace lumbrine
