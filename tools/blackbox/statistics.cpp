#include "tools/blackbox/statistics.h"

#include "blackbox/payload.h"
#include "client_link/client_command.h"
#include "tools/blackbox/hui_words.h"
#include "tools/blackbox/record_words.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <optional>

namespace lumbrine::blackbox {

namespace {

constexpr std::int64_t oneSecond = 1'000'000'000;
constexpr std::int64_t longestEcho = 2 * oneSecond;     // what comes later is another move
constexpr std::int64_t longestReaction = 2 * oneSecond; // likewise
constexpr std::int64_t longestSilence = 10 * oneSecond; // then the host was away

// Goes through the records in their order.
class Reading {
public:
    void add(const Record& record) {
        switch (record.kind) {
        case Kind::datagramIn:
            datagram(record);
            break;
        case Kind::datagramOut:
            if (const auto head = headOf<DatagramHead>(record); head && head->result < 0) ++statistics.unsentDatagrams;
            break;
        case Kind::midiOut:
            if (headOf<ResultHead>(record)) sent(record);
            break;
        case Kind::midiIn:
            for (const HUIWord& word : hui.read(record.channel, Direction::fromHost, record.payload))
                came(record, word);
            break;
        case Kind::anchor:
            if (record.channel == static_cast<std::uint8_t>(AnchorCause::programBegan)) forget();
            break;
        default:
            break;
        }
    }

    Statistics finish() {
        for (const auto& [thread, move] : moves)
            close(move);
        return std::move(statistics);
    }

private:
    // A fader move on the thread that carries it out.
    struct Move {
        std::int64_t began = 0;
        std::optional<std::int64_t> lastMIDI = {};
    };

    void datagram(const Record& record) {
        if (const auto before = moves.find(record.thread); before != moves.end()) {
            close(before->second);
            moves.erase(before);
        }
        if (record.payload.size() < sizeof(DatagramHead)) return;
        const auto command = parseClientCommand(behind<DatagramHead>(record));
        if (command && std::holds_alternative<FaderMove>(*command)) moves[record.thread] = {.began = record.time};
    }

    void close(const Move& move) {
        if (move.lastMIDI) statistics.toMIDI.push_back(*move.lastMIDI - move.began);
    }

    void sent(const Record& record) {
        if (headOf<ResultHead>(record)->result != 0) ++statistics.unsentMIDI;
        for (const HUIWord& word : hui.read(record.channel, Direction::toHost, behind<ResultHead>(record))) {
            if (word.kind == HUIWord::Kind::fader) {
                if (const auto move = moves.find(record.thread); move != moves.end())
                    move->second.lastMIDI = record.time;
                faders[*word.strip] = record.time;
            }
            if (word.isBankKey && word.value == 1) bankKeys[record.channel] = record.time;
            if (word.kind == HUIWord::Kind::key && word.value == 1 && word.text.starts_with("key auto"))
                ++statistics.autoKeys;
        }
    }

    void came(const Record& record, const HUIWord& word) {
        if (word.kind == HUIWord::Kind::fader) take(faders, *word.strip, record.time, longestEcho, statistics.toEcho);
        if (word.kind == HUIWord::Kind::display)
            take(bankKeys, record.channel, record.time, longestReaction, statistics.hostReaction);
        if (word.kind != HUIWord::Kind::ping) return;
        if (const auto before = pings.find(record.channel); before != pings.end()) {
            const std::int64_t gap = record.time - before->second;
            statistics.pingGaps.push_back(gap);
            if (gap > oneSecond * 3 / 2 && gap < longestSilence)
                statistics.lostPings += static_cast<long>(gap / oneSecond);
        }
        pings[record.channel] = record.time;
    }

    static void take(std::map<int, std::int64_t>& begun, int key, std::int64_t time, std::int64_t longest,
                     std::vector<std::int64_t>& durations) {
        const auto found = begun.find(key);
        if (found == begun.end()) return;
        if (time - found->second <= longest) durations.push_back(time - found->second);
        begun.erase(found);
    }

    void forget() {
        moves.clear();
        faders.clear();
        bankKeys.clear();
        pings.clear();
    }

    Statistics statistics;
    HUIWords hui;
    std::map<std::uint32_t, Move> moves;  // by thread
    std::map<int, std::int64_t> faders;   // that were moved and have no echo yet
    std::map<int, std::int64_t> bankKeys; // that went down, by surface
    std::map<int, std::int64_t> pings;    // the newest, by surface
};

std::string inMilliseconds(std::int64_t nanoseconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%9.3f", static_cast<double>(nanoseconds) / 1e6);
    return text.data();
}

std::string row(const std::string& name, std::vector<std::int64_t> times) {
    std::array<char, 64> begin{};
    std::snprintf(begin.data(), begin.size(), "%-28s %7zu", name.c_str(), times.size());
    if (times.empty()) return std::string(begin.data()) + "\n";
    std::ranges::sort(times);
    const auto at = [&](std::size_t percent) { return inMilliseconds(times[(times.size() - 1) * percent / 100]); };
    return std::string(begin.data()) + " " + at(50) + " " + at(99) + " " + at(100) + "\n";
}

std::string count(const std::string& name, long number) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%-28s %7ld\n", name.c_str(), number);
    return text.data();
}

} // namespace

Statistics statisticsOf(const std::vector<TimedRecord>& records) {
    Reading reading;
    std::vector<long> ofTopic(topicNames.size());
    for (const TimedRecord& timed : records) {
        reading.add(timed.record);
        ++ofTopic[static_cast<std::size_t>(topicOf(timed.record.kind))];
    }
    Statistics statistics = reading.finish();
    statistics.ofTopic = std::move(ofTopic);
    return statistics;
}

std::string textOf(const Statistics& statistics, const std::vector<TimedRecord>& records) {
    if (records.empty()) return "No records.\n";
    std::string text =
        "from " + dateAndTime(records.front().wall) + "\nto   " + dateAndTime(records.back().wall) + "\n\n";
    for (std::size_t i = 0; i < topicNames.size(); ++i)
        text += count("records: " + std::string(topicNames[i]), statistics.ofTopic[i]);
    text += "\nmilliseconds                   count       p50       p99       max\n";
    text += row("fader move to MIDI", statistics.toMIDI);
    text += row("fader move to its echo", statistics.toEcho);
    text += row("bank key to a display", statistics.hostReaction);
    text += row("ping to ping", statistics.pingGaps);
    text += "\n" + count("pings lost", statistics.lostPings);
    text += count("AUTO keys pressed", statistics.autoKeys);
    text += count("datagrams not sent", statistics.unsentDatagrams);
    text += count("MIDI packets not sent", statistics.unsentMIDI);
    return text;
}

} // namespace lumbrine::blackbox
