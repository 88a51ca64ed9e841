// For tests: a client of the scripting service on the official gRPC library.
#pragma once

#include "simulator/scripting_json.h"

#include <grpcpp/grpcpp.h>
#include <scripting.grpc.pb.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace lumbrine::interop {

class OfficialClient {
public:
    static constexpr int trackList = 3, hostReadyCheck = 13, registration = 70;
    static constexpr int setMute = 85, setSolo = 86, setRecordEnable = 88, setInputMonitor = 90;
    static constexpr int completed = 3, failed = 4;

    struct Result {
        grpc::Status status;
        ::ptsl::Response response;

        ScriptingJSON body() const { return ScriptingJSON::parse(response.response_body_json(), nullptr, false); }
        int error() const {
            const ScriptingJSON json = ScriptingJSON::parse(response.response_error_json(), nullptr, false);
            return json.is_object() ? json["errors"][0]["command_error_type"].get<int>() : 0;
        }
    };

    // Each client has its own connection.
    explicit OfficialClient(std::uint16_t port) {
        grpc::ChannelArguments arguments;
        arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
        arguments.SetInt(GRPC_ARG_MAX_RECEIVE_MESSAGE_LENGTH, -1);
        arguments.SetInt(GRPC_ARG_INITIAL_RECONNECT_BACKOFF_MS, 50);
        arguments.SetInt(GRPC_ARG_MAX_RECONNECT_BACKOFF_MS, 50);
        stub = ::ptsl::PTSL::NewStub(grpc::CreateCustomChannel("127.0.0.1:" + std::to_string(port),
                                                               grpc::InsecureChannelCredentials(), arguments));
    }

    Result ask(int command, const std::string& body = "", std::chrono::milliseconds limit = std::chrono::seconds(20)) {
        grpc::ClientContext context;
        prepare(context, limit);
        Result result;
        result.status = stub->SendGrpcRequest(&context, request(command, body), &result.response);
        return result;
    }

    // Repeats the call while it fails because the old connection has just ended.
    Result askAfterRestart(int command) {
        for (;;)
            if (Result result = ask(command); result.status.error_code() != grpc::StatusCode::UNAVAILABLE)
                return result;
    }

    // Calls the method that answers with a stream, and returns its only message.
    Result askForStream(int command, const std::string& body = "") {
        grpc::ClientContext context;
        prepare(context, std::chrono::seconds(20));
        Result result;
        const auto reader = stub->SendGrpcStreamingRequest(&context, request(command, body));
        ::ptsl::Response message;
        int messages = 0;
        for (; reader->Read(&message); ++messages)
            result.response = message;
        result.status = reader->Finish();
        EXPECT_EQ(messages, result.status.ok() ? 1 : 0);
        return result;
    }

    // Registers, and uses the session identifier in later calls.
    bool registerOurselves() {
        const Result result = ask(registration, R"({"company_name":"Tarnwick","application_name":"Lumbrine"})");
        if (result.response.header().status() != completed) return false;
        sessionID = result.body()["session_id"].get<std::string>();
        return true;
    }

    Result set(int command, const std::string& track, bool enabled) {
        return ask(command,
                   textOf(ScriptingJSON{{"track_names", ScriptingJSON::array({track})}, {"enabled", enabled}}));
    }

    std::string sessionID;

private:
    static void prepare(grpc::ClientContext& context, std::chrono::milliseconds limit) {
        context.set_wait_for_ready(true);
        context.set_deadline(std::chrono::system_clock::now() + limit);
    }

    ::ptsl::Request request(int command, const std::string& body) const {
        ::ptsl::Request wire;
        wire.mutable_header()->set_task_id("task");
        wire.mutable_header()->set_command(command);
        wire.mutable_header()->set_version(5);
        wire.mutable_header()->set_session_id(sessionID);
        wire.set_request_body_json(body);
        return wire;
    }

    std::unique_ptr<::ptsl::PTSL::Stub> stub;
};

} // namespace lumbrine::interop
