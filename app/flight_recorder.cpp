#include "app/flight_recorder.h"

#include "app/recorded_seams.h"
#include "blackbox/ring_reader.h"
#include "blackbox/ring_writer.h"
#include "platform/posix/mapped_file.h"
#include "platform/posix/wall_clock.h"
#include "platform/recorded/recorder.h"
#include "platform/recorded/recording_clock.h"
#include "platform/recorded/system_address.h"

#include <unistd.h>

#include <atomic>
#include <random>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration interval = seconds(10); // of anchors; the receiver wakes no oftener than that for them
constexpr std::size_t preparedBytes = std::size_t{1} << 20; // more than is recorded in one interval

std::uint64_t newSalt() {
    std::random_device device;
    return static_cast<std::uint64_t>(device()) << 32 | device();
}

struct Place {
    blackbox::RingHeader header;
    std::uint64_t end = 0; // of the records that are there
};

// A file that has no recording of its size gets an empty one.
Place placeIn(MappedFile& file) {
    const auto words = file.words();
    const ByteView bytes(reinterpret_cast<const std::uint8_t*>(words.data()), words.size_bytes());
    const std::size_t capacity = words.size_bytes() - blackbox::headerSize;
    const auto reading = blackbox::readRing(bytes);
    if (reading && reading->header.capacity == capacity) return {reading->header, reading->end};
    const blackbox::RingHeader header{.capacity = capacity, .salt = newSalt()};
    blackbox::writeHeader(header, words.first(blackbox::headerSize / blackbox::wordSize));
    return {header};
}

std::string textOf(MappedFile::Problem problem, const std::string& path, Bilingual text) {
    using enum MappedFile::Problem;
    switch (problem) {
    case inUse:
        return text("⚠️ No black box: another Lumbrine program is writing " + path,
                    "⚠️ ブラックボックスなし：別の Lumbrine が書き込み中 " + path);
    case noRoom:
        return text("⚠️ No black box: the disk has no room for " + path,
                    "⚠️ ブラックボックスなし：ディスクの空きが足りません " + path);
    case notWritten:
        break;
    }
    return text("⚠️ No black box: cannot write " + (path.empty() ? "it: no home folder" : path),
                "⚠️ ブラックボックスなし：書き込めません " + path);
}

} // namespace

struct FlightRecorder::Recording {
    Recording(Runtime& runtime, std::unique_ptr<MappedFile> mapped, std::string program)
        : file(std::move(mapped)), place(placeIn(*file)),
          writer(file->words().subspan(blackbox::headerSize / blackbox::wordSize), place.header.salt, place.end),
          recorder(runtime, writer),
          clock(recorder, wallClock, static_cast<std::uint32_t>(::getpid()), std::move(program)) {}

    // What is stored next meets memory that is ready. Not on the main thread: the disk may take its time.
    void prepare() {
        prepared = writer.position();
        file->expectStores(blackbox::headerSize + prepared % place.header.capacity, preparedBytes);
    }

    bool isToBePrepared() const { return writer.position() - prepared > preparedBytes / 4; }

    const std::unique_ptr<MappedFile> file;
    const Place place;
    blackbox::RingWriter writer;
    const Recorder recorder;
    RecordingClock clock;

private:
    std::atomic<std::uint64_t> prepared{0}; // the position for which it was done last
};

FlightRecorder::FlightRecorder(Runtime& itsRuntime, const std::optional<BlackboxSetting>& setting, std::string program,
                               Bilingual bilingual)
    : runtime(itsRuntime), text(bilingual) {
    if (!setting) return;
    auto file = MappedFile::open(setting->path, setting->size);
    if (!file) {
        problem = textOf(file.error(), setting->path.string(), text);
        return;
    }
    recording = std::make_shared<Recording>(runtime, std::move(*file), std::move(program));
    recording->prepare();
    recording->clock.programBegan();
}

FlightRecorder::~FlightRecorder() {
    end();
}

ReceiverPlatform FlightRecorder::recorded(const ReceiverPlatform& real) {
    if (!recording) return real;
    seams = std::make_unique<RecordedSeams>(real, recording->recorder, systemAddress, text);
    return seams->platform();
}

ReceiverModel::LineSink FlightRecorder::recorded(ReceiverModel::LineSink sink) const {
    if (!recording) return sink;
    return [this, sink = std::move(sink)](const std::string& line) {
        recording->recorder.note(blackbox::Kind::log, 0, {blackbox::textBytes(line)});
        sink(line);
    };
}

void FlightRecorder::keepUp(const std::shared_ptr<ReceiverModel>& model) {
    if (!problem.empty()) model->appendLog(problem);
    if (!recording) return;
    timer = runtime.repeatOnMain(interval, [this, weak = std::weak_ptr(model)] { look(weak); });
}

void FlightRecorder::end() {
    timer.reset();
    if (recording && !std::exchange(ended, true)) recording->clock.programEnded();
}

void FlightRecorder::look(const std::weak_ptr<ReceiverModel>& model) {
    recording->clock.tick();
    if (recording->isToBePrepared())
        runtime.background(Priority::utility, [recording = recording] { recording->prepare(); });
    if (recording->file->isLost() && !std::exchange(toldOfLoss, true))
        tell(model, text("⚠️ The black box has ended: its file was cut, or the disk is full",
                         "⚠️ ブラックボックス終了：ファイルが切り詰められたか、ディスクに空きがありません"));
    if (recording->clock.wentBack() && !std::exchange(toldOfClock, true))
        tell(model, text("⚠️ This computer's clock was set back: so are the times in the black box",
                         "⚠️ コンピュータの時計が戻されました（ブラックボックスの時刻も同様）"));
}

void FlightRecorder::tell(const std::weak_ptr<ReceiverModel>& model, const std::string& line) {
    if (const auto there = model.lock()) there->appendLog(line);
}

} // namespace lumbrine
