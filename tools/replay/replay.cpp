#include "tools/replay/replay.h"

#include "app/recorded_seams.h"
#include "blackbox/payload.h"
#include "blackbox/ring_writer.h"
#include "model/receiver_model.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/recorded/recorder.h"
#include "tools/replay/played_computer.h"
#include "tools/replay/played_midi.h"
#include "tools/replay/played_screen.h"
#include "tools/replay/played_sockets.h"
#include "tools/replay/played_streams.h"

#include <algorithm>
#include <optional>

namespace lumbrine::blackbox {

namespace {

constexpr Duration longestJob = seconds(600); // that keeps the model until it ends

bool isAnchor(const Record& record, AnchorCause cause) {
    return record.kind == Kind::anchor && record.channel == static_cast<std::uint8_t>(cause);
}

std::size_t headSize(Kind kind) {
    switch (kind) {
    case Kind::anchor:
        return sizeof(AnchorHead);
    case Kind::datagramIn:
    case Kind::datagramOut:
        return sizeof(DatagramHead);
    case Kind::socket:
        return sizeof(SocketHead);
    case Kind::midiOut:
    case Kind::midiPort:
        return sizeof(ResultHead);
    case Kind::stream:
        return sizeof(StreamHead);
    case Kind::screen:
        return sizeof(ScreenHead);
    default:
        return 0;
    }
}

struct Program {
    std::int64_t began;
    std::int64_t ended;
    std::vector<Record> records;
};

std::optional<Program> newestProgram(const std::vector<Record>& all) {
    const auto begun = std::ranges::find_if(
        all.rbegin(), all.rend(), [](const Record& record) { return isAnchor(record, AnchorCause::programBegan); });
    if (begun == all.rend()) return std::nullopt;
    Program program{.began = begun->time, .ended = begun->time, .records = {}};
    for (auto record = begun.base(); record != all.end(); ++record) {
        program.ended = std::max(program.ended, record->time);
        if (isAnchor(*record, AnchorCause::programEnded)) break;
        if (record->kind != Kind::anchor && record->payload.size() >= headSize(record->kind))
            program.records.push_back(*record);
    }
    return program;
}

// The receiver creates its ports and its socket when it is started.
std::int64_t startOf(const Program& program) {
    for (const Record& record : program.records)
        if (record.kind == Kind::midiPort || record.kind == Kind::socket) return record.time;
    return program.ended;
}

bool isJapanese(const std::vector<Record>& records) {
    return std::ranges::any_of(records, [](const Record& record) {
        return record.kind == Kind::fact && asText(record.payload) == "language=ja";
    });
}

bool comesByItself(const Record& record) {
    return record.kind == Kind::midiIn || record.kind == Kind::announced ||
           (record.kind == Kind::midiPort && record.channel >= static_cast<std::uint8_t>(PortEvent::returned));
}

bool isSame(const Record& a, const Record& b) {
    return a.kind == b.kind && a.channel == b.channel && a.time == b.time && std::ranges::equal(a.payload, b.payload);
}

class Studio {
public:
    explicit Studio(const Program& its, std::size_t ringSize)
        : program(its), words((headerSize + ringSize) / wordSize),
          writer(std::span(words).subspan(headerSize / wordSize), 0, 0) {
        writeHeader({.capacity = ringSize, .salt = 0}, std::span(words).first(headerSize / wordSize));
    }

    Bytes run() {
        runTo(program.began);
        RecordedSeams seams({runtime, midi, sockets, advertiser, computer, streams, json, screen}, recorder,
                            PlayedSockets::addressOf, text);
        model = ReceiverModel::create(seams.platform(), text, [this](const std::string& line) {
            recorder.note(Kind::log, 0, {textBytes(line)});
        });
        runTo(startOf(program));
        const auto inputs = runtime.startThread("what comes by itself", [this] { play(); });
        model->start();
        runTo(program.ended);
        const ByteView file{reinterpret_cast<const std::uint8_t*>(words.data()), words.size() * wordSize};
        Bytes recorded(file.begin(), file.end());
        endModel();
        return recorded;
    }

private:
    void runTo(std::int64_t time) { runtime.runFor(TimePoint{Duration{time}} - runtime.now()); }

    void play() {
        bool started = false; // which reads the address once
        for (const Record& record : program.records) {
            const bool isAddress = record.kind == Kind::fact && asText(record.payload).starts_with("address");
            const bool isReadAgain = isAddress && std::exchange(started, started || isAddress);
            if (!isReadAgain && !comesByItself(record)) continue;
            if (!clock.waitFor(record)) return;
            if (isReadAgain) {
                runtime.postMain([this] {
                    if (model) model->readAddress();
                });
            } else if (record.kind == Kind::announced) {
                advertiser.play(record);
            } else if (record.kind == Kind::midiPort &&
                       record.channel != static_cast<std::uint8_t>(PortEvent::returned)) {
                runtime.postMain([this, &record] { midi.play(record); });
            } else {
                midi.play(record);
            }
        }
    }

    void endModel() {
        clock.end();
        model->letGo();
        const std::weak_ptr<const void> gone = model->lifetime();
        model.reset();
        runtime.runUntil([&] { return gone.expired(); }, longestJob);
    }

    const Program& program;
    std::vector<std::uint64_t> words;
    RingWriter writer;
    const Bilingual text{isJapanese(program.records)};
    VirtualRuntime runtime{{.turns = VirtualRuntime::Options::Turns::mainLast}};
    const Recorder recorder{runtime, writer};
    TapeClock clock{runtime};
    PlayedMIDI midi{program.records};
    PlayedSockets sockets{program.records, clock};
    PlayedAdvertiser advertiser;
    PlayedComputer computer{program.records};
    PlayedStreams streams{program.records, clock};
    NlohmannJSON json{text};
    PlayedScreen screen{program.records, runtime, clock};
    std::shared_ptr<ReceiverModel> model;
};

} // namespace

std::expected<Replay, std::string> replay(ByteView ring) {
    const auto reading = readRing(ring);
    if (!reading) return std::unexpected("is no recording");
    const auto program = newestProgram(reading->records);
    if (!program) return std::unexpected("has no beginning of a program: it has been overwritten");
    // What differs may be more than was recorded.
    const std::size_t ringSize = std::min(4 * std::max(reading->header.capacity, leastRing), largestRing);
    Replay result{.recorded = program->records, .replayed = {}, .file = Studio(*program, ringSize).run()};
    result.replayed = readRing(result.file)->records;
    while (result.equal < std::min(result.recorded.size(), result.replayed.size()) &&
           isSame(result.recorded[result.equal], result.replayed[result.equal]))
        ++result.equal;
    return result;
}

} // namespace lumbrine::blackbox
