#include "benchmarks/scripting_server.h"

#include <grpcpp/grpcpp.h>
#include <scripting.grpc.pb.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace lumbrine {

namespace {

class Service final : public ::ptsl::PTSL::Service {
    grpc::Status SendGrpcRequest(grpc::ServerContext*, const ::ptsl::Request* request,
                                 ::ptsl::Response* response) override {
        response->mutable_header()->set_command(request->header().command());
        response->mutable_header()->set_status(3); // the number of the status "completed"
        return grpc::Status::OK;
    }
};

void serve(int told, int untilClosed) {
    Service service;
    int port = 0;
    grpc::ServerBuilder builder;
    builder.AddListeningPort("127.0.0.1:0", grpc::InsecureServerCredentials(), &port);
    builder.RegisterService(&service);
    const std::unique_ptr<grpc::Server> server = builder.BuildAndStart();
    const auto bound = static_cast<std::uint16_t>(port);
    if (::write(told, &bound, sizeof bound) != sizeof bound) return;
    for (char nothing = 0; ::read(untilClosed, &nothing, 1) > 0;) {
    }
}

} // namespace

ScriptingServer::ScriptingServer() {
    std::array<int, 2> told{};
    std::array<int, 2> life{};
    if (::pipe(told.data()) != 0 || ::pipe(life.data()) != 0) std::abort();
    process = ::fork();
    if (process == 0) {
        ::close(told[0]);
        ::close(life[1]);
        serve(told[1], life[0]);
        std::_Exit(0);
    }
    ::close(told[1]);
    ::close(life[0]);
    lifeline = life[1];
    if (::read(told[0], &servedPort, sizeof servedPort) != sizeof servedPort) servedPort = 0;
    ::close(told[0]);
}

ScriptingServer::~ScriptingServer() {
    ::close(lifeline);
    ::waitpid(process, nullptr, 0);
}

} // namespace lumbrine
