// Bytes from a client to the simulated scripting service: HTTP/2, gRPC, envelope and command. However the bytes are cut,
// they mean the same.
#include "simulator/default_session.h"
#include "simulator/scripting_service.h"
#include "simulator/wire/fault_filter.h"
#include "simulator/wire/grpc_connection.h"
#include "simulator/wire/scripting_envelope.h"

#include <cstdlib>

namespace {

using namespace lumbrine;

void require(bool holds) {
    if (!holds) std::abort();
}

// A whole service on one connection, behind a wire that resets every third call.
class Served {
public:
    void receive(ByteView bytes) {
        grpc.receive(filter.fromClient(bytes));
        for (const auto& call : grpc.takeCalls()) {
            const auto request = wire::decodeRequest(call.message);
            if (!request) {
                grpc.fail(call.stream, wire::GrpcStatus::internal, "the message cannot be read");
                continue;
            }
            const ScriptingReply reply = service.answer(*request, "fuzzer", TimePoint{});
            require((reply.status == ScriptingStatus::failed) == !reply.errorJSON.empty());
            grpc.reply(call.stream, wire::encodeReply(reply));
        }
        const auto passed = filter.fromService(grpc.takeOutput());
        output.insert(output.end(), passed.toClient.begin(), passed.toClient.end());
    }

    Bytes output;

private:
    SimulatedSession session = defaultSession(5, 1);
    ScriptingService service{{}, 1, [this](const auto& edit) { edit(session); }, TimePoint{}};
    wire::GrpcConnection grpc;
    int calls = 0;
    wire::FaultFilter filter{[this] { return ++calls % 3 == 0 ? WireFault::reset : WireFault::none; }};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Served whole, single;
    whole.receive({data, size});
    for (std::size_t i = 0; i < size; ++i)
        single.receive({data + i, 1});
    require(single.output == whole.output);
    return 0;
}
