#include "simulator/simulator_options.h"

#include <algorithm>

namespace lumbrine {

namespace {

bool holdsEachPartOnce(const std::vector<DumpPart>& order) {
    const int parts = static_cast<int>(DumpPart::counter) + 1;
    if (order.size() != static_cast<std::size_t>(parts)) return false;
    for (int part = 0; part < parts; ++part)
        if (std::ranges::count(order, static_cast<DumpPart>(part)) != 1) return false;
    return true;
}

} // namespace

std::optional<std::string> problemWith(const SimulatorOptions& options) {
    if (options.surfaces < 1 || options.surfaces > 2) return "there are 1 or 2 surfaces";
    if (options.pingInterval <= Duration::zero()) return "the ping interval is more than 0";
    if (options.pingJitter < Duration::zero()) return "a ping is late by 0 seconds or more";
    if (options.latePingOneIn < 0) return "one ping in 1 or more is late, or none with 0";
    if (options.latePing < Duration::zero()) return "a late ping is late by 0 seconds or more";
    if (options.hostTimeout <= Duration::zero()) return "the host's time-out is more than 0";
    if (options.latency < Duration::zero()) return "the latency is 0 or more";
    if (options.faderBits != 9 && options.faderBits != 10 && options.faderBits != 14)
        return "faders have 9, 10 or 14 bits";
    if (options.displaysPerSysEx < 1 || options.displaysPerSysEx > 9) return "a SysEx holds 1 to 9 displays";
    if (options.modeShown < Duration::zero()) return "an automation mode is shown for 0 seconds or more";
    if (options.valueShownFor <= Duration::zero()) return "a value is shown for more than 0 seconds";
    if (options.mostClicks < 1 || options.mostClicks > 0x3F) return "1 to 63 clicks of one message count";
    if (options.ledOn <= Duration::zero() || options.ledOff <= Duration::zero())
        return "a flashing LED is on and off for more than 0 seconds";
    if (options.clicksPerRingPosition < 1) return "a ring position takes at least 1 click";
    if (options.meterRate < 1 || options.meterRate > 100) return "meters are sent 1 to 100 times a second";
    if (options.sessionOpensAfter < Duration::zero()) return "a session opens after 0 seconds or more";
    if (options.grabPortsAfter < Duration::zero()) return "the ports are grabbed after 0 seconds or more";
    if (options.dropOnePressIn < 0) return "one press in 1 or more is dropped, or none with 0";
    if (options.restlessUserEvery < Duration::zero()) return "a restless user acts every 0 seconds (never) or more";
    if (!holdsEachPartOnce(options.dumpOrder)) return "the order of the dump holds each part once";
    if (auto problem = problemWith(options.packets)) return problem;
    if (auto problem = problemWith(options.scripting)) return problem;
    return problemWith(options.screen);
}

} // namespace lumbrine
