// The activity log as a shell shows it and as a report contains it: every line with the time at which it came. Longer
// than the model's list of lines, which is what the window of a phone's user needs and not what an engineer needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

// One row of the log in a window. A row keeps its number while its text changes.
struct LogRow {
    std::uint64_t number;
    std::string time; // "14:03:59"; may be empty
    std::string line;

    bool operator==(const LogRow&) const = default;
};

class LogRecord {
public:
    static constexpr std::size_t longest = 2000; // lines
    static constexpr std::size_t mostRows = 120;

    void add(const std::string& time, const std::string& line);

    // The newest rows, oldest first. A run of heartbeats of one surface is one row, "♥ ping #10 … #340 received", with
    // the time of the last: otherwise there would soon be nothing else.
    const std::vector<LogRow>& rows() const { return shown; }

    // The newest rows that are failures or warnings, however long ago they came.
    const std::vector<LogRow>& problems() const { return shownProblems; }

    // All lines of the record, one for each, with their times.
    std::string text() const;

private:
    bool extendsARun(const std::string& time, std::string_view line);

    struct Entry {
        std::string time;
        std::string line;
    };
    std::deque<Entry> entries;
    std::vector<LogRow> shown;
    std::vector<LogRow> shownProblems;
    std::uint64_t numbers = 0;
};

// How the rows on the screen become those of the log: the first `gone` go, the next `kept` stay, whatever stands after
// them goes, and the rows of the log from `kept` on are appended.
struct RowChange {
    std::size_t gone;
    std::size_t kept;

    bool operator==(const RowChange&) const = default;
};
RowChange changeBetween(const std::vector<LogRow>& onScreen, const std::vector<LogRow>& log);

} // namespace lumbrine
