// Taking over a list of 1,000 tracks: from reading the first byte of the response until the receiver has adopted the
// list and sent it to the client. Also the part of that time that parses JSON; the peer is the JSON library parsing
// into its own document. The response of a server on the official gRPC library is recorded once and then played back
// as fast as it is read. Prints one JSON list with the medians in nanoseconds.
#include "benchmarks/median.h"
#include "benchmarks/session_receiver.h"
#include "model/testing/session_columns.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/virtual/memory_midi.h"
#include "ptsl/ptsl_client.h"
#include "simulator/default_session.h"
#include "simulator/grpc/grpc_scripting_server.h"
#include "simulator/simulated_pro_tools.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace lumbrine {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int trackCount = 1000;
constexpr int runs = 40;
constexpr double limit = 5e6;

double nanosecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double, std::nano>(Clock::now() - begin).count();
}

class RecordingStreams final : public PosixStreamSockets {
public:
    int receive(int fd, std::span<std::uint8_t> buffer) override {
        const int received = PosixStreamSockets::receive(fd, buffer);
        if (received > 0) append(tape, buffer.first(static_cast<std::size_t>(received)));
        return received;
    }

    Bytes tape;
};

class PlayingStreams final : public NullStreams {
public:
    explicit PlayingStreams(ByteView recorded) : left(recorded) {}

    int connect(int, const std::string&, std::uint16_t, Duration) override { return 0; }
    int send(int, ByteView bytes) override { return static_cast<int>(bytes.size()); }
    int receive(int, std::span<std::uint8_t> buffer) override {
        const std::size_t size = std::min(buffer.size(), left.size());
        std::memcpy(buffer.data(), left.data(), size);
        left = left.subspan(size);
        return static_cast<int>(size);
    }

private:
    ByteView left;
};

class TimedJSON final : public JSON {
public:
    std::expected<std::string, JSONError> serialise(const JSONValue::Object& object) override {
        return real.serialise(object);
    }
    std::expected<JSONValue, JSONError> parse(std::string_view document) override {
        const auto begin = Clock::now();
        auto parsed = real.parse(document);
        time += nanosecondsSince(begin);
        return parsed;
    }

    double time = 0;

private:
    NlohmannJSON real{Bilingual(false)};
};

// Keeps the text that was parsed last.
class RecordingJSON final : public JSON {
public:
    std::expected<std::string, JSONError> serialise(const JSONValue::Object& object) override {
        return real.serialise(object);
    }
    std::expected<JSONValue, JSONError> parse(std::string_view document) override {
        last = document;
        return real.parse(document);
    }

    std::string last;

private:
    NlohmannJSON real{Bilingual(false)};
};

std::vector<PTSLTrack> require(PTSLClient::Result<std::vector<PTSLTrack>> tracks) {
    if (tracks && tracks->size() == trackCount) return *std::move(tracks);
    std::fputs("no track list\n", stderr);
    std::exit(1);
}

struct Recorded {
    Bytes connection;
    std::string trackList;
};

Recorded record(Runtime& runtime) {
    MemoryMIDI midi(runtime);
    SimulatedProTools proTools(runtime, midi, {}, defaultSession(trackCount, 1));
    const GrpcScriptingServer server(runtime, proTools.scripting(), 0);
    RecordingStreams streams;
    RecordingJSON json;
    PTSLClient client(runtime, streams, json, Bilingual(false), "Tarnwick", "Lumbrine",
                      {.port = server.port().value_or(0)});
    require(client.trackList());
    return {std::move(streams.tape), std::move(json.last)};
}

void forget(PublishedState& published) {
    published.session.listed = false;
    for (Track& track : published.session.tracks) {
        track.name.reset();
        track.color.reset();
        track.inputMonitor = false;
    }
}

// Nanoseconds that the JSON library takes to parse into its own document type.
double peerParsingTime(const std::string& document) {
    const auto begin = Clock::now();
    const auto parsed = nlohmann::json::parse(document);
    return nanosecondsSince(begin);
}

void measure() {
    RunLoop loop;
    RealRuntime runtime(loop);
    const Recorded recorded = record(runtime);
    SessionReceiver receiver(std::vector<std::string>(trackCount, "Trak"));

    std::vector<double> whole;
    std::vector<double> parsing;
    std::vector<double> peerParsing;
    for (int run = 0; run < runs; ++run) {
        forget(receiver.parts.state.published);
        PlayingStreams streams(recorded.connection);
        TimedJSON json;
        PTSLClient client(runtime, streams, json, Bilingual(false), "Tarnwick", "Lumbrine", {});
        const auto begin = Clock::now();
        std::vector<TrackMetadata::TrackList> candidates;
        candidates.push_back(require(client.trackList()));
        receiver.parts.metadata.adopt(candidates, "PTSL");
        whole.push_back(nanosecondsSince(begin));
        parsing.push_back(json.time);
        peerParsing.push_back(peerParsingTime(recorded.trackList));
    }
    std::fprintf(stderr, "the list of 1000 tracks: %zu KB on the wire\n", recorded.connection.size() / 1000);
    std::printf("[{\"name\": \"list of 1000 tracks, wire to adopted\", \"ours\": %.0f, \"limit\": %.0f},\n"
                " {\"name\": \"of which parsing JSON\", \"ours\": %.0f, \"peer\": %.0f}]\n",
                median(whole), limit, median(parsing), median(peerParsing));
}

} // namespace
} // namespace lumbrine

int main() {
    lumbrine::measure();
}
