#include "simulator/wire/in_process_scripting.h"

#include "simulator/envelope/scripting_envelope.h"
#include "simulator/wire/fault_filter.h"
#include "simulator/wire/grpc_connection.h"

#include <scripting.pb.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

namespace {

constexpr std::string_view unaryPath = "/ptsl.PTSL/SendGrpcRequest";
constexpr std::string_view streamingPath = "/ptsl.PTSL/SendGrpcStreamingRequest";

} // namespace

// All connections of one service. When the service has ended, they do nothing any more.
class InProcessScripting::Connections : public std::enable_shared_from_this<Connections> {
public:
    class One;

    Connections(Runtime& runtime, SimulatedScripting& scripting, std::function<void(bool)> setListening)
        : runtime(runtime), scripting(scripting), setListening(std::move(setListening)),
          queue(runtime.serialQueue("simulated scripting wire", Priority::normal)) {
        scripting.wireFaults().use();
        this->setListening(true);
    }

    std::unique_ptr<ScriptingConnection> accept(std::unique_ptr<ScriptingLine> line);
    void goAway();
    void die();
    void end();

    Runtime& runtime;
    SimulatedScripting& scripting;

private:
    std::vector<std::shared_ptr<One>> living();

    const std::function<void(bool)> setListening;
    std::vector<std::weak_ptr<One>> all;
    std::uint64_t accepted = 0;
    std::unique_ptr<SerialQueue> queue;
};

class InProcessScripting::Connections::One : public std::enable_shared_from_this<One> {
public:
    One(std::weak_ptr<Connections> connections, WireFaults& wireFaults, std::unique_ptr<ScriptingLine> line,
        std::string name)
        : connections(std::move(connections)), line(std::move(line)), name(std::move(name)),
          piece(wireFaults.options.bytesAtOnce), filter([&wireFaults] { return wireFaults.draw(); }) {}

    void received(ByteView bytes) {
        if (ended) return;
        grpc.receive(filter.fromClient(bytes));
        const std::vector<wire::GrpcConnection::Call> calls = grpc.takeCalls();
        flush();
        for (const auto& call : calls)
            ask(call);
    }

    void flush() {
        bool died = false;
        while (!ended) {
            const Bytes output = grpc.takeOutput();
            if (output.empty()) break;
            const wire::FaultFilter::Passed passed = filter.fromService(output);
            send(passed.toClient);
            if (passed.end == wire::FaultFilter::End::finish) finish();
            died = passed.end == wire::FaultFilter::End::die;
            if (died) breakOff();
            grpc.receive(passed.toService);
        }
        if (grpc.isOver()) finish();
        if (const auto owner = connections.lock(); died && owner) owner->die();
    }

    void goAway() {
        grpc.goAway();
        flush();
    }

    void finish() {
        if (!std::exchange(ended, true)) line->finish();
    }

    void breakOff() {
        if (!std::exchange(ended, true)) line->breakOff();
    }

private:
    void ask(const wire::GrpcConnection::Call& call) {
        const auto owner = connections.lock();
        if (!owner) return;
        if (call.path != unaryPath && call.path != streamingPath)
            return refuse(call.stream, wire::GrpcStatus::unimplemented, "there is no such method");
        ::ptsl::Request request;
        if (!request.ParseFromArray(call.message.data(), static_cast<int>(call.message.size())))
            return refuse(call.stream, wire::GrpcStatus::internal, "the message cannot be read");
        owner->scripting.ask(requestIn(request), name,
                             [self = weak_from_this(), stream = call.stream](const ScriptingReply& reply) {
                                 if (const auto connection = self.lock()) connection->answer(stream, reply);
                             });
    }

    void answer(std::int32_t stream, const ScriptingReply& reply) {
        ::ptsl::Response response;
        putInto(response, reply);
        const std::string bytes = response.SerializeAsString();
        grpc.reply(stream, Bytes(bytes.begin(), bytes.end()));
        flush();
    }

    void refuse(std::int32_t stream, wire::GrpcStatus status, std::string_view message) {
        grpc.fail(stream, status, message);
        flush();
    }

    void send(ByteView bytes) {
        const std::size_t most = piece == 0 ? bytes.size() : piece;
        for (; !bytes.empty(); bytes = bytes.subspan(std::min(most, bytes.size())))
            line->send(bytes.first(std::min(most, bytes.size())));
    }

    const std::weak_ptr<Connections> connections;
    const std::unique_ptr<ScriptingLine> line;
    const std::string name;
    const std::size_t piece;
    wire::FaultFilter filter;
    wire::GrpcConnection grpc;
    bool ended = false;
};

namespace {

// The client's reference to a connection.
template <typename One>
class Held final : public ScriptingConnection {
public:
    explicit Held(std::shared_ptr<One> connection) : connection(std::move(connection)) {}
    void received(ByteView bytes) override { connection->received(bytes); }

private:
    const std::shared_ptr<One> connection;
};

} // namespace

std::unique_ptr<ScriptingConnection> InProcessScripting::Connections::accept(std::unique_ptr<ScriptingLine> line) {
    auto one = std::make_shared<One>(weak_from_this(), scripting.wireFaults(), std::move(line),
                                     "in process " + std::to_string(++accepted));
    std::erase_if(all, [](const std::weak_ptr<One>& held) { return held.expired(); });
    all.push_back(one);
    one->flush();
    return std::make_unique<Held<One>>(std::move(one));
}

std::vector<std::shared_ptr<InProcessScripting::Connections::One>> InProcessScripting::Connections::living() {
    std::vector<std::shared_ptr<One>> found;
    for (const std::weak_ptr<One>& held : all)
        if (auto one = held.lock()) found.push_back(std::move(one));
    return found;
}

void InProcessScripting::Connections::goAway() {
    for (const auto& one : living())
        one->goAway();
}

void InProcessScripting::Connections::die() {
    if (!queue) return;
    setListening(false);
    for (const auto& one : living())
        one->breakOff();
    scripting.restart();
    queue->postAfter(scripting.wireFaults().options.downTime, [this] { setListening(true); });
}

void InProcessScripting::Connections::end() {
    setListening(false);
    for (const auto& one : living())
        one->breakOff();
    queue.reset();
}

InProcessScripting::InProcessScripting(Runtime& runtime, SimulatedScripting& scripting,
                                       std::function<void(bool)> setListening)
    : connections(std::make_shared<Connections>(runtime, scripting, std::move(setListening))) {}

InProcessScripting::~InProcessScripting() {
    connections->end();
}

std::unique_ptr<ScriptingConnection> InProcessScripting::accept(std::unique_ptr<ScriptingLine> line) {
    return connections->accept(std::move(line));
}

void InProcessScripting::goAway() {
    connections->goAway();
}

void InProcessScripting::die() {
    connections->die();
}

} // namespace lumbrine
