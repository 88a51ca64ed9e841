// The far end of virtual time beside gRPC's official server: simulated sessions are worth what the two have in common.
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/virtual/memory_midi.h"
#include "simulator/default_session.h"
#include "simulator/grpc/grpc_scripting_server.h"
#include "simulator/simulated_pro_tools.h"
#include "simulator/testing/grpc_conversation.h"
#include "simulator/testing/virtual_scripting.h"

#include <scripting.pb.h>

namespace lumbrine::interop {
namespace {

using namespace wire;
using Lines = std::vector<std::string>;

// One connection to a service, and what it says to it: frames as words.
class Client {
public:
    Client(StreamSockets& sockets, std::uint16_t port) : sockets(sockets), fd(sockets.open()) {
        sockets.setReceiveTimeout(fd, seconds(20));
        EXPECT_EQ(sockets.connect(fd, "127.0.0.1", port, seconds(20)), 0);
    }
    ~Client() { sockets.close(fd); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    // Up to the end of a call or of the connection. Pings and window updates are left out, which the official server
    // sends by its own clock, and what stands in headers, which the receiver does not read.
    Lines say(ByteView bytes) {
        while (!bytes.empty()) {
            const int sent = sockets.send(fd, bytes);
            if (sent <= 0) break;
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
        }
        Lines heard;
        Bytes buffer(65'536);
        while (heard.empty() || !heard.back().ends_with("+5")) {
            const int count = sockets.receive(fd, buffer);
            if (count <= 0) {
                heard.emplace_back("end");
                break;
            }
            for (const std::string& frame : listener.told(Bytes(buffer.begin(), buffer.begin() + count))) {
                if (frame.starts_with("PING") || frame.starts_with("WINDOW_UPDATE")) continue;
                heard.push_back(frame.starts_with("HEADERS") ? frame.substr(0, frame.find(' ', frame.find('+')))
                                                             : frame);
            }
        }
        return heard;
    }

private:
    StreamSockets& sockets;
    const int fd;
    Listener listener;
};

// A host ready check whose request has at least that many bytes.
Bytes callOf(std::uint32_t stream, std::size_t size = 0) {
    ::ptsl::Request request;
    request.mutable_header()->set_command(13);
    request.mutable_header()->set_session_id(std::string(size, 'x'));
    return callBytes(stream, request.SerializeAsString());
}

Bytes firstCallOf(std::size_t size) {
    Bytes bytes = greeting();
    append(bytes, callOf(1, size));
    return bytes;
}

Bytes acknowledgedCallOf(std::uint32_t stream, std::size_t size) {
    Bytes bytes = frameBytes(NGHTTP2_SETTINGS, NGHTTP2_FLAG_ACK, 0);
    append(bytes, callOf(stream, size));
    return bytes;
}

class FarEnd : public testing::Test {
protected:
    // Has a client say this to both services, each over a connection of its own.
    void say(const std::vector<Bytes>& steps) {
        Client toOfficial(sockets, server.port().value_or(0));
        Client toVirtual(streams, 31416);
        for (const Bytes& step : steps) {
            official.push_back(toOfficial.say(step));
            inVirtualTime.push_back(toVirtual.say(step));
        }
    }

    RunLoop loop;
    RealRuntime realRuntime{loop};
    MemoryMIDI midi{realRuntime};
    SimulatedProTools proTools{realRuntime, midi, {}, defaultSession(4, 1)};
    GrpcScriptingServer server{realRuntime, proTools.scripting(), 0};
    PosixStreamSockets sockets;

    VirtualRuntime runtime;
    VirtualStreams streams{runtime};
    MemoryMIDI virtualMIDI{runtime};
    SimulatedProTools virtualProTools{runtime, virtualMIDI, {}, defaultSession(4, 1)};
    VirtualScripting service{runtime, streams, virtualProTools.scripting()};

    std::vector<Lines> official, inVirtualTime; // what each of them said, step by step
};

TEST_F(FarEnd, SaysWhatTheOfficialServerSays) {
    say({firstCallOf(0), acknowledgedCallOf(3, 0), callOf(5)});
    EXPECT_EQ(inVirtualTime, official);
    EXPECT_EQ(official.back().back(), "HEADERS 5 +5");
}

TEST_F(FarEnd, TakesLongFramesOnceItsSettingsAreAcknowledged) {
    say({firstCallOf(16'000), acknowledgedCallOf(3, 70'000), callOf(5, 4'000'000)});
    EXPECT_EQ(inVirtualTime, official);
    EXPECT_EQ(official.back().back(), "HEADERS 5 +5");
}

// The official server fails the call with status 14 before it closes the connection, libnghttp2 says why in a GOAWAY.
TEST_F(FarEnd, EndsTheConnectionAtALongFrameBeforeThat) {
    say({firstCallOf(17'000), {}});
    for (const std::vector<Lines>& said : {official, inVirtualTime}) {
        EXPECT_EQ(said.back().back(), "end");
        EXPECT_THAT(said.front(), testing::Not(testing::Contains(testing::StartsWith("DATA"))));
    }
}

} // namespace
} // namespace lumbrine::interop
