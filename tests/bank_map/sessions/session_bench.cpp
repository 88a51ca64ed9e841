#include "tests/bank_map/sessions/session_bench.h"

#include "model/testing/session_columns.h"
#include "simulator/bank_rules.h"
#include "simulator/short_name.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace lumbrine {

namespace {

using namespace std::chrono_literals;

constexpr Duration longestScan = 400s;
constexpr Duration valueOverName = 1700ms; // then a name that is not there counts as changed

SimulatorOptions optionsOf(const HostKind& host) {
    return {.surfaces = host.surfaces,
            .shortNames = host.shortNames,
            .nonASCII = host.nonASCII,
            .mainDisplay = false,
            .counter = false,
            .endOfSession = host.end,
            .bankLeftAligns = host.banksAlign,
            .bankRightAligns = host.banksAlign};
}

class Judge {
public:
    Judge(const NamedSession& session, const HostKind& hostKind, Witness witness)
        : named(session), host(hostKind), studio(session.session(), optionsOf(hostKind)), lister(studio, witness) {}

    Judgement run() {
        studio.run(2s);
        studio.proTools->scrollTo(named.view);
        settle();
        if (named.meanwhile) {
            named.meanwhile(*studio.proTools);
            if (named.listLags) lister.lag(5s);
            studio.run(5s);
            visit(named.visited, 30s);
            visit(views().back(), 30s);
        }
        look("after the scan");
        for (const int view : views()) {
            visit(view, valueOverName);
            look("scrolled");
        }
        return verdict;
    }

private:
    void settle() {
        studio.mapSession(longestScan);
        for (int scans = 0; scans < 3; ++scans) {
            studio.run(3s); // time enough for a second scan to begin
            studio.runUntil([this] { return studio.state().quiet(); }, longestScan);
        }
    }

    void visit(int view, Duration time) {
        studio.proTools->scrollTo(view);
        studio.run(time);
        studio.runUntil([this] { return studio.state().quiet(); }, longestScan);
    }

    std::vector<int> views() const {
        const SimulatorSnapshot now = studio.proTools->snapshot();
        const int last = lastBankOffset(now.shownTracks, now.width, host.end);
        std::vector<int> places;
        for (const int view : {0, 3, now.width, last / 2, last})
            if (view <= last) places.push_back(view);
        return places;
    }

    void look(const std::string& when) {
        const Found found = seen();
        if (found >= verdict.worst) return;
        verdict.worst = found;
        verdict.where = when + " to " + std::to_string(studio.hostOffset()) + " of " +
                        std::to_string(studio.proTools->snapshot().shownTracks) + " tracks: taken for " +
                        std::to_string(studio.shown().bankOffset) + " of " +
                        std::to_string(studio.shown().session.size());
    }

    Found seen() {
        const bool mapIsRight = isMapOfHost(studio.shown().session);
        if (studio.shown().bankOffset < 0) return mapIsRight ? Found::map : Found::unsure;
        return mapIsRight && studio.shown().bankOffset == studio.hostOffset() ? Found::right : Found::wrong;
    }

    bool isMapOfHost(const Session& map) const {
        const SimulatedSession session = studio.proTools->session();
        const auto isSameTrack = [&](const Track& track, int id) {
            const std::string& name = session.find(id)->name;
            return (!track.name || *track.name == name) && (!track.displayKnown || track.display == shownFor(name));
        };
        return std::ranges::equal(map.tracks, session.shownTracks(), isSameTrack);
    }

    // Without the blanks around it; the characters of a HUI that are not ASCII are blank.
    std::string shownFor(const std::string& name) const {
        const DisplayText text = shortName(name, host.shortNames, host.nonASCII);
        std::string shown(text.begin(), text.end());
        std::ranges::replace_if(shown, [](char character) { return character < ' ' || character > '~'; }, ' ');
        const std::size_t first = shown.find_first_not_of(' ');
        return first == std::string::npos ? "" : shown.substr(first, shown.find_last_not_of(' ') + 1 - first);
    }

    const NamedSession& named;
    const HostKind host;
    Studio studio;
    SessionLister lister;
    Judgement verdict;
};

} // namespace

std::string HostKind::text() const {
    constexpr std::array names{"cut", "without vowels", "colliding"};
    constexpr std::array others{"blank", "question marks", "HUI characters"};
    return std::to_string(8 * surfaces) + " strips, bank keys " + (banksAlign ? "align" : "count") + ", last bank " +
           (end == EndOfSession::fill ? "filled" : "blank") + ", names " + names[static_cast<std::size_t>(shortNames)] +
           ", other characters " + others[static_cast<std::size_t>(nonASCII)];
}

std::vector<HostKind> hostKinds(std::size_t session, std::size_t hosts) {
    std::vector<HostKind> kinds;
    for (const bool align : {true, false})
        for (const EndOfSession end : {EndOfSession::fill, EndOfSession::blank}) {
            const std::size_t turn = session + kinds.size();
            kinds.push_back({.banksAlign = align,
                             .end = end,
                             .surfaces = 1 + static_cast<int>((session / 2 + kinds.size()) % 2),
                             .shortNames = static_cast<ShortNameRule>(turn % 3),
                             .nonASCII = static_cast<NonASCIIRule>(turn / 3 % 3)});
        }
    std::ranges::rotate(kinds, kinds.begin() + static_cast<std::ptrdiff_t>(session % kinds.size()));
    kinds.resize(hosts);
    return kinds;
}

Judgement judge(const NamedSession& session, const HostKind& host, Witness witness) {
    return Judge(session, host, witness).run();
}

} // namespace lumbrine
