// One unary call to the scripting service by our client and by the official gRPC library's client, in turn, to the same
// server in a separate process. Measured over an open connection, and for a first call, which includes connecting.
// Prints one JSON list with the medians in nanoseconds, and on standard error how much memory our client adds.
#include "benchmarks/median.h"
#include "benchmarks/scripting_server.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "ptsl/ptsl_envelope.h"
#include "ptsl/ptsl_wire.h"

#include <grpcpp/grpcpp.h>
#include <scripting.grpc.pb.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int warmUp = 200;
constexpr int calls = 3000;
constexpr int connections = 150;
constexpr double memoryLimitKiB = 1024;

constexpr auto command = PTSLCommand::trackList;
constexpr std::uint64_t completed = 3;

void require(bool succeeded, const char* who) {
    if (succeeded) return;
    std::fprintf(stderr, "%s: a call failed\n", who);
    std::exit(1);
}

class Ours {
public:
    Ours(Runtime& runtime, std::uint16_t port) : wire(runtime, sockets, Bilingual(false), "127.0.0.1", port, 3.0) {}

    void call() {
        const auto response = wire.call("/ptsl.PTSL/SendGrpcRequest", requestEnvelope(command, "", ""));
        require(response && responseEnvelope(*response, Bilingual(false))->status == completed, "ours");
    }

private:
    PosixStreamSockets sockets;
    PTSLWire wire;
};

class Official {
public:
    explicit Official(std::uint16_t port) {
        grpc::ChannelArguments arguments;
        arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1); // do not share a connection between channels
        stub = ::ptsl::PTSL::NewStub(grpc::CreateCustomChannel("127.0.0.1:" + std::to_string(port),
                                                               grpc::InsecureChannelCredentials(), arguments));
    }

    void call() {
        grpc::ClientContext context;
        ::ptsl::Request request;
        request.mutable_header()->set_command(static_cast<std::int32_t>(command));
        request.mutable_header()->set_version(5);
        ::ptsl::Response response;
        require(stub->SendGrpcRequest(&context, request, &response).ok() &&
                    response.header().status() == static_cast<int>(completed),
                "official");
    }

private:
    std::unique_ptr<::ptsl::PTSL::Stub> stub;
};

struct Samples {
    std::vector<double> taken;

    template <typename Work>
    void measure(Work work) {
        const auto begin = Clock::now();
        work();
        taken.push_back(std::chrono::duration<double, std::nano>(Clock::now() - begin).count());
    }
};

long residentKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmRSS:") {
            long kib = 0;
            status >> kib;
            return kib;
        }
    return 0;
}

std::ptrdiff_t threads() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

// Call this before any code of the official library runs in this process: its memory would count, too.
double memoryAdded(Runtime& runtime, std::uint16_t port) {
    const std::ptrdiff_t threadsBefore = threads();
    const long before = residentKiB();
    Ours ours(runtime, port);
    for (int i = 0; i < warmUp; ++i)
        ours.call();
    const long added = residentKiB() - before;
    std::fprintf(stderr, "the scripting client adds %ld KiB and %td threads\n", added, threads() - threadsBefore);
    return static_cast<double>(added);
}

void compare() {
    const ScriptingServer server;
    RunLoop loop;
    RealRuntime runtime(loop);
    const double added = memoryAdded(runtime, server.port());

    Samples ourCalls;
    Samples theirCalls;
    {
        Ours ours(runtime, server.port());
        Official official(server.port());
        for (int i = 0; i < warmUp; ++i) {
            ours.call();
            official.call();
        }
        for (int i = 0; i < calls; ++i) {
            ourCalls.measure([&] { ours.call(); });
            theirCalls.measure([&] { official.call(); });
        }
    }

    Samples ourFirsts;
    Samples theirFirsts;
    for (int i = 0; i < connections; ++i) {
        ourFirsts.measure([&] { Ours(runtime, server.port()).call(); });
        theirFirsts.measure([&] { Official(server.port()).call(); });
    }

    std::printf(
        "[{\"name\": \"scripting call (p50)\", \"ours\": %.0f, \"peer\": %.0f},\n"
        " {\"name\": \"first scripting call (p50)\", \"ours\": %.0f, \"peer\": %.0f},\n"
        " {\"name\": \"memory of the scripting client\", \"unit\": \"KiB\", \"ours\": %.0f, \"limit\": %.0f}]\n",
        median(ourCalls.taken), median(theirCalls.taken), median(ourFirsts.taken), median(theirFirsts.taken), added,
        memoryLimitKiB);
}

} // namespace
} // namespace lumbrine

int main() {
    lumbrine::compare();
}
