#include "tests/simulation/host_truth.h"

#include "simulator/bank_rules.h"
#include "simulator/short_name.h"

#include <algorithm>
#include <map>

namespace lumbrine::simulation {

namespace {

constexpr int mostBanks = 64;

int after(BankButton button, int offset, const HostView& host, const SimulatorOptions& options) {
    return bankOffsetAfter(button, offset, static_cast<int>(host.names.size()), host.width, options);
}

int lastOffset(const HostView& host, const SimulatorOptions& options) {
    return lastBankOffset(static_cast<int>(host.names.size()), host.width, options.endOfSession);
}

Names withoutBlankEnd(Names names) {
    while (!names.empty() && names.back().empty())
        names.pop_back();
    return names;
}

// Where going back ends: when a press changes nothing that is to be seen.
int beginningFrom(int offset, const HostView& host, const SimulatorOptions& options) {
    for (int bank = 0; bank < mostBanks; ++bank) {
        const int before = offset;
        offset = after(BankButton::bankLeft, offset, host, options);
        if (windowAt(host, offset) == windowAt(host, before)) break;
    }
    return offset;
}

// The end of the map and the beginning of the window are one piece as far as they can be.
void join(Names& map, const Names& window) {
    std::size_t shared = std::min(map.size(), window.size());
    while (!std::equal(window.begin(), window.begin() + static_cast<std::ptrdiff_t>(shared),
                       map.end() - static_cast<std::ptrdiff_t>(shared)))
        --shared;
    map.insert(map.end(), window.begin() + static_cast<std::ptrdiff_t>(shared), window.end());
}

Names mapFrom(int offset, const HostView& host, const SimulatorOptions& options) {
    std::vector<Names> windows{windowAt(host, offset)};
    for (int bank = 0; bank < mostBanks; ++bank) {
        offset = after(BankButton::bankRight, offset, host, options);
        Names shown = windowAt(host, offset);
        if (shown == windows.back()) break;
        windows.push_back(std::move(shown));
    }
    windows.back() = withoutBlankEnd(std::move(windows.back()));
    Names map;
    for (const Names& window : windows)
        join(map, window);
    return map;
}

} // namespace

std::string trimmed(std::string text) {
    std::ranges::replace_if(text, [](char character) { return character < ' ' || character > '~'; }, ' ');
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    while (!text.empty() && text.front() == ' ')
        text.erase(0, 1);
    return text;
}

HostView viewOf(const SimulatedProTools& proTools) {
    const SimulatorSnapshot snapshot = proTools.snapshot();
    const SimulatedSession session = proTools.session();
    HostView host{.offset = snapshot.offset, .width = snapshot.width, .names = {}};
    for (const int id : session.shownTracks()) {
        const DisplayText text =
            shortName(session.find(id)->name, proTools.options.shortNames, proTools.options.nonASCII);
        host.names.push_back(trimmed({text.begin(), text.end()}));
    }
    return host;
}

Names windowAt(const HostView& host, int offset) {
    Names window(static_cast<std::size_t>(host.width));
    for (std::size_t i = 0; i < window.size(); ++i)
        if (const std::size_t track = static_cast<std::size_t>(offset) + i; track < host.names.size())
            window[i] = host.names[track];
    return window;
}

bool isBlank(const Names& window) {
    return std::ranges::all_of(window, [](const std::string& name) { return name.empty(); });
}

int onlyPlaceOf(const Names& window, const Names& map) {
    if (isBlank(window)) return -1;
    const HostView asHost{.offset = 0, .width = static_cast<int>(window.size()), .names = map};
    int place = -1;
    for (int offset = 0; offset <= static_cast<int>(map.size()); ++offset) {
        if (windowAt(asHost, offset) != window) continue;
        if (place >= 0) return -1;
        place = offset;
    }
    return place;
}

bool isMapOf(const HostView& host, Names map) {
    return withoutBlankEnd(std::move(map)) == withoutBlankEnd(host.names);
}

bool everyOffsetLooksDifferent(const HostView& host, const SimulatorOptions& options) {
    std::map<Names, int> looks;
    for (int offset = 0; offset <= static_cast<int>(host.names.size()); ++offset)
        ++looks[windowAt(host, offset)];
    for (int offset = 0; offset <= lastOffset(host, options); ++offset)
        if (const Names window = windowAt(host, offset); isBlank(window) || looks[window] > 1) return false;
    return true;
}

std::set<Names> mapsOfScans(const HostView& host, const SimulatorOptions& options) {
    std::set<int> beginnings;
    for (int offset = 0; offset <= lastOffset(host, options); ++offset)
        beginnings.insert(beginningFrom(offset, host, options));
    std::set<Names> maps;
    for (const int beginning : beginnings)
        maps.insert(mapFrom(beginning, host, options));
    return maps;
}

} // namespace lumbrine::simulation
