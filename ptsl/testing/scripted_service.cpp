#include "ptsl/testing/scripted_service.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace lumbrine::service {

namespace {

constexpr std::size_t prefaceSize = 24;
constexpr std::size_t headerSize = 9;
constexpr std::size_t prefixSize = 5;

// Reads the frames in `received` from `at` on and advances `at` past them.
std::vector<SentFrame> framesIn(const Bytes& received, std::size_t& at) {
    std::vector<SentFrame> frames;
    while (received.size() >= at + headerSize) {
        const auto byte = [&](std::size_t i) { return static_cast<std::uint32_t>(received[at + i]); };
        const std::size_t length = byte(0) << 16 | byte(1) << 8 | byte(2);
        if (received.size() - at - headerSize < length) break;
        const auto payload = received.begin() + static_cast<std::ptrdiff_t>(at + headerSize);
        frames.push_back({static_cast<std::uint8_t>(byte(3)),
                          static_cast<std::uint8_t>(byte(4)),
                          byte(5) << 24 | byte(6) << 16 | byte(7) << 8 | byte(8),
                          {payload, payload + static_cast<std::ptrdiff_t>(length)}});
        at += headerSize + length;
    }
    return frames;
}

bool endsRequest(const SentFrame& frame) {
    return frame.type == 0 && (frame.flags & 1) != 0 && frame.payload.size() >= prefixSize;
}

} // namespace

class ScriptedService::Peer final : public StreamPeer {
public:
    Peer(ScriptedService& service, VirtualLine line) : service(service), line(std::move(line)) {
        service.received.emplace_back();
        connection = service.received.size();
        if (service.greet) service.greet(this->line);
    }

    void received(ByteView bytes) override {
        Bytes& all = service.received[connection - 1];
        all.insert(all.end(), bytes.begin(), bytes.end());
        for (const SentFrame& frame : framesIn(all, seen)) {
            constexpr std::uint8_t dataType = 0;
            if (frame.type == dataType) body.insert(body.end(), frame.payload.begin(), frame.payload.end());
            if (!endsRequest(frame)) continue;
            const Bytes whole = std::exchange(body, {}); // one call at a time
            Call call{line, frame.stream, {whole.begin() + prefixSize, whole.end()}, ++service.callCount, connection};
            if (service.answer) service.answer(call);
        }
    }

private:
    ScriptedService& service;
    VirtualLine line;
    std::size_t connection = 0;
    std::size_t seen = prefaceSize;
    Bytes body; // of the request, as far as it has come
};

ScriptedService::ScriptedService(VirtualStreams& streams, std::uint16_t listeningPort)
    : streams(streams), listeningPort(listeningPort) {
    streams.listen(listeningPort, [this](VirtualLine line) { return std::make_unique<Peer>(*this, std::move(line)); });
}

ScriptedService::~ScriptedService() {
    streams.stopListening(listeningPort);
}

std::vector<SentFrame> ScriptedService::frames(std::size_t connection) const {
    std::size_t at = prefaceSize;
    return framesIn(received.at(connection - 1), at);
}

std::vector<SentFrame> ScriptedService::framesOfType(std::uint8_t type) const {
    std::vector<SentFrame> found;
    for (std::size_t connection = 1; connection <= received.size(); ++connection)
        for (SentFrame& frame : frames(connection))
            if (frame.type == type) found.push_back(std::move(frame));
    return found;
}

} // namespace lumbrine::service
