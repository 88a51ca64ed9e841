#include "app/log_record.h"

#include "app/log_lines.h"

#include <algorithm>
#include <optional>

namespace lumbrine {

namespace {

// "[9-16] ♥ ping #120 received → replied": what stands before the number, the number, and what stands after it. In a
// row of a run, the number is that of the newest one.
struct Heartbeat {
    std::string_view before;
    std::string_view number;
    std::string_view after;
};

constexpr std::string_view beat = "♥ ping #";
constexpr std::string_view until = " … #";

std::optional<Heartbeat> heartbeatIn(std::string_view line) {
    const std::size_t mark = line.find(beat);
    if (mark > 16) return std::nullopt; // absent, or far behind: a track may be called so
    const std::size_t begin = mark + beat.size();
    const std::size_t end = std::min(line.find_first_not_of("0123456789", begin), line.size());
    if (end == begin) return std::nullopt;
    return Heartbeat{line.substr(0, begin), line.substr(begin, end - begin), line.substr(end)};
}

void append(std::vector<LogRow>& rows, const LogRow& row) {
    rows.push_back(row);
    if (rows.size() > LogRecord::mostRows) rows.erase(rows.begin());
}

} // namespace

void LogRecord::add(const std::string& time, const std::string& line) {
    entries.push_back({time, line});
    if (entries.size() > longest) entries.pop_front();
    if (extendsARun(time, line)) return;
    const LogRow row{.number = ++numbers, .time = time, .line = line};
    append(shown, row);
    const LogMarker marker = markerOf(line).marker;
    if (marker == LogMarker::failure || marker == LogMarker::warning) append(shownProblems, row);
}

// The two surfaces send heartbeats in turn, so a run is looked for behind other heartbeats, too.
bool LogRecord::extendsARun(const std::string& time, std::string_view line) {
    const auto heartbeat = heartbeatIn(line);
    if (!heartbeat) return false;
    for (auto row = shown.rbegin(); row != shown.rend(); ++row) {
        const auto earlier = heartbeatIn(row->line);
        if (!earlier) return false;
        if (earlier->before != heartbeat->before) continue;
        std::string text(heartbeat->before);
        text.append(earlier->number).append(until).append(heartbeat->number).append(heartbeat->after);
        row->time = time;
        row->line = std::move(text);
        return true;
    }
    return false;
}

std::string LogRecord::text() const {
    std::string whole;
    for (const Entry& entry : entries)
        whole.append(entry.time).append("  ").append(entry.line).append("\n");
    return whole;
}

RowChange changeBetween(const std::vector<LogRow>& onScreen, const std::vector<LogRow>& log) {
    std::size_t gone = 0;
    while (gone < onScreen.size() && (log.empty() || onScreen[gone].number < log.front().number))
        ++gone;
    std::size_t kept = 0;
    while (gone + kept < onScreen.size() && kept < log.size() && onScreen[gone + kept] == log[kept])
        ++kept;
    return {.gone = gone, .kept = kept};
}

} // namespace lumbrine
