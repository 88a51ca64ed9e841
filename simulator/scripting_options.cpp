#include "simulator/scripting_options.h"

namespace lumbrine {

std::optional<std::string> problemWith(const ScriptingOptions& options) {
    constexpr int mostTracks = 1000;
    if (options.pageLimit < 1) return "a page holds at least 1 track";
    if (options.version < 1 || options.version > 5) return "the service has version 1 to 5";
    if (options.miscount < -mostTracks || options.miscount > mostTracks)
        return "the track list is wrong by at most 1000 tracks";
    if (options.commandTime < Duration::zero()) return "a command takes 0 seconds or more";
    if (options.readyAfter < Duration::zero()) return "the host is ready after 0 seconds or more";
    if (options.busyOneIn < 0) return "one request in 1 or more meets a busy host, or none with 0";
    if (options.busyBurst < 1) return "a busy host refuses at least 1 request";
    if (options.stallOneIn < 0) return "one request in 1 or more stalls, or none with 0";
    if (options.stallTime <= Duration::zero()) return "a stall takes more than 0 seconds";
    if (options.resetOneIn < 0) return "one call in 1 or more is reset, or none with 0";
    if (options.goAwayOneIn < 0) return "one call in 1 or more ends its connection, or none with 0";
    if (options.dieOneIn < 0) return "one call in 1 or more ends the service, or none with 0";
    if (options.downTime < Duration::zero()) return "the service is away for 0 seconds or more";
    return std::nullopt;
}

bool needFaultyWire(const ScriptingOptions& options) {
    return options.faultyWire || options.resetOneIn > 0 || options.goAwayOneIn > 0 || options.dieOneIn > 0 ||
           options.bytesAtOnce > 0;
}

} // namespace lumbrine
