#include "simulator/grpc/grpc_scripting_server.h"

#include "simulator/envelope/scripting_envelope.h"
#include "simulator/grpc/open_call.h"

#include <grpc/support/log.h>
#include <grpcpp/grpcpp.h>
#include <scripting.grpc.pb.h>

#include <string>
#include <utility>

namespace lumbrine {

namespace {

grpc::Status ended() {
    return {grpc::StatusCode::UNAVAILABLE, "the service has ended"};
}

// Answers with a stream of one message.
class OneMessage final : public grpc::ServerWriteReactor<::ptsl::Response> {
public:
    void end(const std::optional<ScriptingReply>& reply) {
        if (!reply) return Finish(ended());
        putInto(message, *reply);
        StartWriteAndFinish(&message, grpc::WriteOptions(), grpc::Status::OK);
    }

    void OnDone() override { delete this; }

private:
    ::ptsl::Response message;
};

class Service final : public ::ptsl::PTSL::CallbackService {
public:
    Service(Runtime& runtime, SimulatedScripting& scripting) : scripting(scripting), calls(runtime) {}

    grpc::ServerUnaryReactor* SendGrpcRequest(grpc::CallbackServerContext* context, const ::ptsl::Request* request,
                                              ::ptsl::Response* response) override {
        grpc::ServerUnaryReactor* const reactor = context->DefaultReactor();
        ask(*context, *request, [reactor, response](const std::optional<ScriptingReply>& reply) {
            if (reply) putInto(*response, *reply);
            reactor->Finish(reply ? grpc::Status::OK : ended());
        });
        return reactor;
    }

    grpc::ServerWriteReactor<::ptsl::Response>* SendGrpcStreamingRequest(grpc::CallbackServerContext* context,
                                                                         const ::ptsl::Request* request) override {
        auto* const reactor = new OneMessage; // deletes itself when the call is over
        ask(*context, *request, [reactor](const std::optional<ScriptingReply>& reply) { reactor->end(reply); });
        return reactor;
    }

    void endAll() { calls.endAll(); }

private:
    void ask(const grpc::CallbackServerContext& context, const ::ptsl::Request& request, OpenCall::End end) {
        scripting.ask(requestIn(request), context.peer(),
                      [call = calls.add(std::move(end))](ScriptingReply reply) { call->end(std::move(reply)); });
    }

    SimulatedScripting& scripting;
    OpenCalls calls;
};

} // namespace

class GrpcScriptingServer::Running {
public:
    Running(Runtime& runtime, SimulatedScripting& served, std::uint16_t wantedPort) : service(runtime, served) {
        gpr_set_log_function([](gpr_log_func_args*) {});
        grpc::ServerBuilder builder;
        int port = 0;
        builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);
        builder.AddListeningPort("127.0.0.1:" + std::to_string(wantedPort), grpc::InsecureServerCredentials(), &port);
        builder.RegisterService(&service);
        server = builder.BuildAndStart();
        if (server != nullptr && port > 0) boundPort = static_cast<std::uint16_t>(port);
    }

    ~Running() {
        service.endAll();
        if (server != nullptr) server->Shutdown(gpr_time_0(GPR_CLOCK_REALTIME));
    }

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    std::optional<std::uint16_t> port() const { return boundPort; }

private:
    Service service;
    std::optional<std::uint16_t> boundPort;
    std::unique_ptr<grpc::Server> server; // last member, so destroyed before the service that it calls
};

GrpcScriptingServer::GrpcScriptingServer(Runtime& runtime, SimulatedScripting& scripting, std::uint16_t wantedPort)
    : running(std::make_unique<Running>(runtime, scripting, wantedPort)) {}

GrpcScriptingServer::~GrpcScriptingServer() = default;

std::optional<std::uint16_t> GrpcScriptingServer::port() const {
    return running->port();
}

} // namespace lumbrine
