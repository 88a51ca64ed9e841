// Passes on the bytes of one connection between a client and the scripting service, and adds faults to its calls. No
// I/O.
#pragma once

#include "simulator/wire/http2_frame.h"
#include "simulator/wire_faults.h"

#include <functional>
#include <map>

namespace lumbrine::wire {

class FaultFilter {
public:
    // `fateOfCall` returns the fault of each new call.
    explicit FaultFilter(std::function<WireFault()> fateOfCall) : fateOfCall(std::move(fateOfCall)) {}

    // Returns the bytes for the service: whole frames. In the client's first SETTINGS it sets the header table size to
    // 0, so that the service does not compress headers by earlier ones, which a fault may have removed.
    Bytes fromClient(ByteView bytes);

    enum class End {
        none,
        finish, // end the connection in order after sending the bytes
        die,    // break all connections; the service is away
    };
    struct Passed {
        Bytes toClient;
        Bytes toService = {};
        End end = End::none; // after another value, the connection passes nothing on
    };
    Passed fromService(ByteView bytes);

private:
    void lookAt(Frame& frame);
    static void swallow(const Frame& frame, Passed& passed);

    const std::function<WireFault()> fateOfCall;
    FrameCutter fromClientCutter;
    FrameCutter fromServiceCutter;
    Bytes prefaceSoFar;
    bool speaksHTTP2 = true; // the preface, as far as received, is HTTP/2's
    bool settingsSeen = false;
    std::uint32_t lastStream = 0;
    std::map<std::uint32_t, WireFault> faults; // by stream, for streams with a fault
    bool ended = false;
};

} // namespace lumbrine::wire
