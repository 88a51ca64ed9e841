// For tests: the scripting service of a simulated Pro Tools on the TCP of virtual time.
//
//     VirtualStreams streams(runtime);
//     VirtualScripting service(runtime, streams, proTools.scripting());
//     ... the receiver connects to 127.0.0.1:31416 on `streams` ...
#pragma once

#include "platform/virtual/virtual_streams.h"
#include "simulator/wire/in_process_scripting.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace lumbrine {

class VirtualScripting {
public:
    // `streams` and `scripting` must outlive this object.
    VirtualScripting(VirtualRuntime& runtime, VirtualStreams& streams, SimulatedScripting& scripting,
                     std::uint16_t port = 31416)
        : streams(streams), port(port), service(std::make_shared<Service>()) {
        service->end = std::make_unique<InProcessScripting>(runtime, scripting,
                                                            [this](bool listening) { setListening(listening); });
    }

    ~VirtualScripting() { service->end.reset(); }
    VirtualScripting(const VirtualScripting&) = delete;
    VirtualScripting& operator=(const VirtualScripting&) = delete;

    // Only between calls; see InProcessScripting.
    void goAway() { service->end->goAway(); }
    void die() { service->end->die(); }

    // As a program does that a dialog has held up for too long: no connection is taken any more, until it dies.
    void takeNoConnections() { setListening(false); }

private:
    struct Service {
        std::unique_ptr<InProcessScripting> end;
    };

    class Line final : public ScriptingLine {
    public:
        explicit Line(VirtualLine line) : line(std::move(line)) {}
        void send(ByteView bytes) override { line.send(bytes); }
        void finish() override { line.finish(); }
        void breakOff() override { line.reset(); }

    private:
        VirtualLine line;
    };

    class Peer final : public StreamPeer {
    public:
        explicit Peer(std::unique_ptr<ScriptingConnection> connection) : connection(std::move(connection)) {}
        void received(ByteView bytes) override {
            if (connection) connection->received(bytes);
        }

    private:
        const std::unique_ptr<ScriptingConnection> connection; // null when the service has just ended
    };

    void setListening(bool listening) {
        if (!listening) return streams.stopListening(port);
        streams.listen(port, [held = std::weak_ptr<Service>(service)](VirtualLine line) -> std::unique_ptr<StreamPeer> {
            const auto found = held.lock();
            auto newLine = std::make_unique<Line>(std::move(line));
            if (found && found->end) return std::make_unique<Peer>(found->end->accept(std::move(newLine)));
            newLine->breakOff();
            return std::make_unique<Peer>(nullptr);
        });
    }

    VirtualStreams& streams;
    const std::uint16_t port;
    const std::shared_ptr<Service> service;
};

} // namespace lumbrine
