// lumbrine-blackbox: reads what a receiver recorded.
#include "app/check_answer.h"
#include "app/support_report.h"
#include "blackbox/support/recording_file.h"
#include "blackbox/support/redaction.h"
#include "blackbox/support/report.h"
#include "model/state/configuration.h"
#include "platform/linux/linux_system_info.h"
#include "platform/linux/local_questions.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/posix/termination_signals.h"
#include "tools/blackbox/blackbox_arguments.h"
#include "tools/blackbox/facts.h"
#include "tools/blackbox/pcap.h"
#include "tools/blackbox/show.h"
#include "tools/blackbox/statistics.h"
#include "tools/replay/replay_text.h"

#include <cstdio>
#include <filesystem>

namespace lumbrine::blackbox {
namespace {

constexpr Duration lookInterval = seconds(0.5); // with --follow

int complain(const std::filesystem::path& path, const std::string& what) {
    std::fprintf(stderr, "lumbrine-blackbox: %s %s\n", path.c_str(), what.c_str());
    return 1;
}

void printLine(const std::string& line) {
    std::puts(line.c_str());
}

std::vector<TimedRecord> recordsIn(ByteView ring) {
    const auto reading = readRing(ring);
    return reading ? timed(reading->records) : std::vector<TimedRecord>{};
}

// A time that is not readable is an error.
std::optional<ShowFilter> filterOf(const BlackboxArguments& arguments, const std::vector<TimedRecord>& records) {
    ShowFilter filter{.strip = arguments.strip, .topics = arguments.topics};
    const std::int64_t newest = records.empty() ? 0 : records.back().wall;
    for (const auto& [text, time] : {std::pair{&arguments.from, &filter.from}, {&arguments.to, &filter.to}}) {
        if (text->empty()) continue;
        *time = wallTimeOf(*text, newest);
        if (!*time) return std::nullopt;
    }
    return filter;
}

std::expected<Bytes, std::string> load(const std::filesystem::path& path, const BlackboxArguments& arguments) {
    auto ring = loadRecording(path);
    if (ring && arguments.redacted) ring = redacted(*ring);
    return ring;
}

int follow(const BlackboxArguments& arguments, const std::filesystem::path& path, Show& show) {
    RunLoop loop;
    const TerminationSignals signals([&loop] { loop.stop(); });
    RealRuntime runtime(loop);
    const auto timer = runtime.repeatOnMain(lookInterval, [&] {
        if (const auto ring = load(path, arguments)) show.add(recordsIn(*ring), true);
        std::fflush(stdout);
    });
    loop.run();
    runtime.shutDown();
    return 0;
}

int show(const BlackboxArguments& arguments, const std::filesystem::path& path, ByteView ring) {
    const std::vector<TimedRecord> records = recordsIn(ring);
    const auto filter = filterOf(arguments, records);
    if (!filter) {
        std::fputs("lumbrine-blackbox: a time is \"14:03\", \"14:03:59\" or \"2026-11-23 14:03:59\"\n", stderr);
        return 2;
    }
    Show lines(*filter, printLine);
    lines.add(records, arguments.follow);
    std::fflush(stdout);
    return arguments.follow ? follow(arguments, path, lines) : 0;
}

int written(const BlackboxArguments& arguments, const std::expected<void, std::string>& result) {
    return result ? 0 : complain(arguments.copy, result.error());
}

// As diff does: 0 when they are the same, 1 when they differ, 2 when there is nothing to compare.
int compareWithReplay(const std::filesystem::path& path, ByteView ring) {
    const auto result = replay(ring);
    if (!result) {
        complain(path, result.error());
        return 2;
    }
    std::fputs(textOf(*result).c_str(), stdout);
    return result->isEqual() ? 0 : 1;
}

// What the receiver that runs says of itself.
std::string diagnosisNow() {
    constexpr Duration answerTime = seconds(1.5);
    const LinuxSystemInfo system;
    const Bilingual text(false); // for those who help
    const auto answer = askLocally(checkName(Configuration::read(system).port), checkQuestion(text), answerTime);
    const auto read = answer ? readAnswer(*answer) : std::nullopt;
    return read ? read->list : "no receiver answers\n";
}

int run(const BlackboxArguments& arguments) {
    const std::filesystem::path path =
        arguments.recording.empty() ? recordingPath(LinuxSystemInfo()) : std::filesystem::path(arguments.recording);
    const auto ring = load(path, arguments);
    if (!ring) return complain(path, ring.error());
    switch (arguments.command) {
    case BlackboxArguments::Command::show:
        return show(arguments, path, *ring);
    case BlackboxArguments::Command::save:
        return written(arguments, saveRecording(arguments.copy, *ring));
    case BlackboxArguments::Command::pcap: {
        const auto records = recordsIn(*ring);
        return written(arguments, writePrivately(arguments.copy, pcapOf(records, receiverPortIn(records))));
    }
    case BlackboxArguments::Command::stats: {
        const auto records = recordsIn(*ring);
        std::fputs(textOf(statisticsOf(records), records).c_str(), stdout);
        return 0;
    }
    case BlackboxArguments::Command::report:
        return written(arguments, saveRecording(arguments.copy, reportOf(*ring, diagnosisNow())));
    case BlackboxArguments::Command::facts:
        std::fputs(textOf(factsOf(recordsIn(*ring))).c_str(), stdout);
        return 0;
    case BlackboxArguments::Command::replay:
        return compareWithReplay(path, *ring);
    }
    return 0;
}

} // namespace
} // namespace lumbrine::blackbox

int main(int count, char** arguments) {
    using namespace lumbrine::blackbox;
    const std::span<const char* const> given(arguments, static_cast<std::size_t>(count));
    const auto read = readBlackboxArguments(given.subspan(count > 0 ? 1 : 0), LUMBRINE_VERSION);
    if (read) return run(*read);
    std::fputs(read.error().text.c_str(), read.error().status == 0 ? stdout : stderr);
    return read.error().status;
}
