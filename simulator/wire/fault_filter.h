// One connection to the scripting service as its bytes pass by, with the faults that happen to its calls. It stands
// between a client and a service that has no faults of its own; it has no I/O.
#pragma once

#include "simulator/wire/http2_frame.h"
#include "simulator/wire_faults.h"

#include <functional>
#include <map>

namespace lumbrine::wire {

class FaultFilter {
public:
    // `draw` tells the fate of each new call.
    explicit FaultFilter(std::function<WireFault()> draw) : fateOfCall(std::move(draw)) {}

    // What goes on to the service: whole frames as they come. The first settings also tell the service not to compress
    // its headers by what it has sent before, so that a client can do without the frames that a fault swallows.
    Bytes fromClient(ByteView bytes);

    enum class End {
        none,
        finish, // the connection ends in order once the bytes are sent
        die,    // all connections break, and the service is away
    };
    struct Passed {
        Bytes toClient;
        Bytes toService = {};
        End end = End::none; // after that the connection has nothing more to say
    };
    Passed fromService(ByteView bytes);

private:
    void lookAt(Frame& frame);
    static void swallow(const Frame& frame, Passed& passed);

    const std::function<WireFault()> fateOfCall;
    FrameCutter fromClientCutter;
    FrameCutter fromServiceCutter;
    Bytes prefaceSoFar;
    bool speaksHTTP2 = true; // as far as its preface has come
    bool settingsSeen = false;
    std::uint32_t lastStream = 0;
    std::map<std::uint32_t, WireFault> faults; // of the streams that have one
    bool ended = false;
};

} // namespace lumbrine::wire
