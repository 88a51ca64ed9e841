// Facts about how the host writes its MIDI: read from the bytes alone.
#pragma once

#include "tools/blackbox/facts.h"

#include <map>
#include <optional>

namespace lumbrine::blackbox {

class WireFacts {
public:
    void came(const TimedRecord& record);
    void sent(const TimedRecord& record);

    std::vector<Fact> finish();

private:
    struct Surface {
        std::optional<std::uint8_t> status; // of the message before, in the same packet
        bool isZoneFresh = false;           // selected after the last port
        std::optional<std::int64_t> lastPing;
        std::optional<std::int64_t> dumpBegan; // when it answered or was reset after a silence
        std::vector<std::string> dump;         // the kinds of what came since then
    };

    void packet(const TimedRecord& record, Surface& surface);
    void message(const TimedRecord& record, Surface& surface, ByteView message);
    void control(const TimedRecord& record, Surface& surface, ByteView message);
    void ping(const TimedRecord& record, Surface& surface);
    void partOfDump(const TimedRecord& record, Surface& surface, const std::string& kind);
    static void vote(Fact& fact, const std::string& answer, const TimedRecord& record);
    static void endDump(Surface& surface, Fact& order);

    std::map<int, Surface> surfaces;
    std::uint8_t zone = 0;
    std::uint8_t lowFaderBits = 0; // all that were ever set
    long faders = 0;
    Fact packing{"messages in a packet"}, running{"running status"}, displays{"displays in a SysEx"},
        zones{"zone select"}, pings{"ping interval"}, order{"order of a dump"}, precision{"fader precision"},
        autoLED{"AUTO LED of Read"};
};

} // namespace lumbrine::blackbox
