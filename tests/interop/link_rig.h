// For tests: the scripting link in real time on the system's sockets.
#pragma once

#include "platform/portable/nlohmann_json.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "ptsl/ptsl_client.h"
#include "ptsl/ptsl_wire.h"

#include <chrono>
#include <filesystem>
#include <iterator>

namespace lumbrine::interop {

class LinkTest : public testing::Test {
protected:
    using Clock = std::chrono::steady_clock;
    static constexpr const char* path = "/ptsl.PTSL/SendGrpcRequest";

    std::unique_ptr<PTSLWire> wireTo(std::uint16_t port, double timeout = 3.0) {
        return std::make_unique<PTSLWire>(runtime, sockets, english, "127.0.0.1", port, timeout);
    }

    std::unique_ptr<PTSLClient> clientOf(std::uint16_t port) {
        return std::make_unique<PTSLClient>(runtime, sockets, json, english, "Tarnwick", "Lumbrine",
                                            PTSLAddress{.port = port});
    }

    template <typename Value>
    static std::string errorOf(const PTSLClient::Result<Value>& result) {
        return result ? "no error" : description(result.error(), Bilingual(false));
    }

    static std::string errorOf(const std::expected<Bytes, PTSLError>& result) {
        return result ? "no error" : result.error().description(Bilingual(false));
    }

    static std::ptrdiff_t openDescriptors() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    }

    const Bilingual english{false};
    RunLoop loop;
    RealRuntime runtime{loop};
    PosixStreamSockets sockets;
    NlohmannJSON json{english};
};

} // namespace lumbrine::interop
