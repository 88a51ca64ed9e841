// What a flood of hellos makes the receiver send: one client says hello a thousand times a second, in a session of 200
// tracks. Prints one JSON object, in bytes on the wire a second.
#include "benchmarks/session_receiver.h"
#include "platform/virtual/null_platform.h"
#include "platform/virtual/virtual_runtime.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t trackCount = 200;
constexpr std::size_t headers = 28; // IPv4 and UDP
constexpr std::size_t limit = 200'000;
constexpr int measured = 10; // seconds

class Flood final : public NullDatagrams {
public:
    explicit Flood(Runtime& rt) : runtime(rt) {}

    int receive(int, std::span<std::uint8_t> buffer, PeerAddress&) override {
        runtime.sleepFor(1ms);
        if (ended) return -1;
        const Bytes hello{0x01, 0x00};
        std::ranges::copy(hello, buffer.begin());
        return static_cast<int>(hello.size());
    }
    int send(int, ByteView bytes, const PeerAddress&) override {
        sent += headers + bytes.size();
        return static_cast<int>(bytes.size());
    }
    void shutDown(int) override { ended = true; }

    std::size_t sent = 0;

private:
    Runtime& runtime;
    bool ended = false;
};

std::size_t bytesASecond() {
    VirtualRuntime runtime({.patience = 16});
    NullMIDI midi;
    Flood flood(runtime);
    NullAdvertiser advertiser;
    const NullComputer system{{{"QV_PORT", "0"}, {"QV_NO_BONJOUR", "1"}}};
    NullStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    ReceiverParts parts({runtime, midi, flood, advertiser, system, streams, json, accessibility},
                        Configuration::read(system), Bilingual(false), [](const std::string&) {});
    const auto life = std::make_shared<const int>(0);
    parts.jobs.bind(life);
    parts.state.published.winW = stripCount;
    parts.state.published.bankOffset = 0;
    parts.state.published.session = detailedSession(std::vector<std::string>(trackCount, "Trck"));
    parts.endpoint.startUDPAndBonjour(
        [&parts](ByteView bytes, const Sender& sender) { parts.commands.handleUDP(bytes, sender); });
    runtime.runFor(std::chrono::seconds(measured));
    parts.endpoint.close();
    return flood.sent / measured;
}

} // namespace
} // namespace lumbrine

int main() {
    std::printf("{\"name\": \"1,000 hellos a second, 200 tracks\", \"ours\": %zu, \"limit\": %zu, \"unit\": \"B/s\"}\n",
                lumbrine::bytesASecond(), lumbrine::limit);
    return 0;
}
