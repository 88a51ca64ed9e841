// The input is what a client sends to the simulated scripting service: HTTP/2, gRPC, envelope and command.
#include "fuzz/require.h"
#include "simulator/default_session.h"
#include "simulator/envelope/scripting_envelope.h"
#include "simulator/scripting_service.h"
#include "simulator/wire/fault_filter.h"
#include "simulator/wire/grpc_connection.h"

#include <scripting.pb.h>

namespace {

using namespace lumbrine;

// The connection must find the same calls and give the same answers whether the bytes come at once or one by one.
void requireSameMeaningByteByByte(ByteView bytes) {
    wire::GrpcConnection whole, single;
    whole.receive(bytes);
    for (const std::uint8_t& byte : bytes)
        single.receive({&byte, 1});
    require(whole.takeOutput() == single.takeOutput());
    require(whole.isOver() == single.isOver());
    const auto calls = whole.takeCalls(), sameCalls = single.takeCalls();
    require(calls.size() == sameCalls.size());
    for (std::size_t i = 0; i < calls.size(); ++i)
        require(calls[i].stream == sameCalls[i].stream && calls[i].path == sameCalls[i].path &&
                calls[i].message == sameCalls[i].message);
}

void requireWholeFrames(const Bytes& bytes) {
    constexpr std::size_t headerLength = 9;
    wire::FrameCutter cutter;
    cutter.add(bytes);
    std::size_t cut = 0;
    while (const auto frame = cutter.next())
        cut += headerLength + frame->payload.size();
    require(cut == bytes.size());
}

// The whole service on one connection. Every third call is reset on the way.
class Served {
public:
    Served() { flush(); }

    void receive(ByteView bytes) {
        grpc.receive(filter.fromClient(bytes));
        for (const auto& call : grpc.takeCalls()) {
            ::ptsl::Request request;
            if (!request.ParseFromArray(call.message.data(), static_cast<int>(call.message.size()))) {
                grpc.fail(call.stream, wire::GrpcStatus::internal, "the message cannot be read");
                continue;
            }
            const ScriptingReply reply = service.answer(requestIn(request), "fuzzer", TimePoint{});
            require((reply.status == ScriptingStatus::failed) == !reply.errorJSON.empty());
            ::ptsl::Response response;
            putInto(response, reply);
            const std::string message = response.SerializeAsString();
            grpc.reply(call.stream, Bytes(message.begin(), message.end()));
        }
        flush();
    }

private:
    void flush() {
        for (Bytes said = grpc.takeOutput(); !said.empty(); said = grpc.takeOutput()) {
            const auto passed = filter.fromService(said);
            requireWholeFrames(passed.toClient);
            grpc.receive(passed.toService);
        }
    }

    SimulatedSession session = defaultSession(5, 1);
    ScriptingService service{{}, 1, [this](const auto& edit) { edit(session); }, TimePoint{}};
    int calls = 0;
    wire::GrpcConnection grpc;
    wire::FaultFilter filter{[this] { return ++calls % 3 == 0 ? WireFault::reset : WireFault::none; }};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    requireSameMeaningByteByByte({data, size});
    Served served;
    served.receive({data, size});
    return 0;
}
