#include "tests/simulation/host_truth.h"

#include "simulator/bank_rules.h"
#include "simulator/short_name.h"

#include <algorithm>
#include <map>

namespace lumbrine::simulation {

namespace {

int lastOffset(const HostView& host, const SimulatorOptions& options) {
    return lastBankOffset(static_cast<int>(host.names.size()), host.width, options.endOfSession);
}

Names withoutBlankEnd(Names names) {
    while (!names.empty() && names.back().empty())
        names.pop_back();
    return names;
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

} // namespace lumbrine::simulation
