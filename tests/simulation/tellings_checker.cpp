// The part of told_checker.h that looks at every telling.
#include "remote/receiver_message.h"
#include "tests/simulation/actions.h"
#include "tests/simulation/host_timeline.h"
#include "tests/simulation/source_truth.h"
#include "tests/simulation/told_checker.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace lumbrine::simulation {

namespace {

using Tracks = ShownTracks::Tracks;

class TellingsChecker {
public:
    TellingsChecker(const Scenario& scenario, const Evidence& given, const ShownTracks& shownTracks)
        : evidence(given), host(given.record, scenario.host), shown(shownTracks) {
        for (const ReceivedDatagram& datagram : evidence.datagrams)
            if (const auto action = actionAskedBy(datagram); action && action->kind == WireAction::Kind::fader)
                asked[{action->number, action->value}].push_back(&datagram);
    }

    std::vector<std::string> check() {
        for (const SentDatagram& datagram : evidence.sent.list) {
            if (saysAgain(datagram)) continue;
            telling = &datagram;
            const auto message = remote::parseReceiverMessage(datagram.bytes);
            if (!message) continue;
            if (const auto* fader = std::get_if<remote::Fader>(&*message)) look(*fader);
            if (const auto* name = std::get_if<remote::FullName>(&*message)) look(*name);
            if (const auto* colors = std::get_if<remote::Colors>(&*message)) look(*colors);
            if (const auto* row = std::get_if<remote::TrackRow>(&*message)) look(*row);
        }
        return std::move(violations);
    }

private:
    // A row that was true stays true until it is another, because it may be an earlier value of the track.
    bool saysAgain(const SentDatagram& datagram) {
        constexpr std::uint8_t trackRow = 0x1B;
        if (datagram.bytes.size() < 4 || datagram.bytes[1] != trackRow) return false;
        Bytes& last = lastRows[datagram.peer][datagram.bytes[2] * 256 + datagram.bytes[3]];
        if (last == datagram.bytes) return true;
        last = datagram.bytes;
        return false;
    }

    const std::string& client() const { return evidence.sent.peers[telling->peer]; }

    template <typename Was>
    bool anyEverWas(const Tracks& tracks, Was was) const {
        return std::ranges::any_of(tracks,
                                   [&](int track) { return host.everWas(track, distantPast, telling->at, was); });
    }

    void look(const remote::Fader& fader) {
        const int strip = fader.strip.index();
        const int value = fader.value.raw();
        const Tracks tracks = namedOnStrip(strip);
        if (tracks.empty() || std::ranges::find(tracks, 0) != tracks.end() || isJustShown(strip)) return;
        if (anyEverWas(tracks, [&](const SimulatedTrack& track) { return host.faderOf(track) == value; })) return;
        if (isItsOwn(strip, value, tracks)) return;
        complain("the fader of strip " + std::to_string(strip) + " told as " + std::to_string(value), tracks);
    }

    // By its name; and those of this name that the host has there now, or that are there by the position that is
    // told: a job may have gone on from one track to another of the same name.
    Tracks namedOnStrip(int strip) const {
        Tracks tracks = shown.onStrip(client(), strip, telling->at);
        const auto displayAt = [&](int track) {
            const SimulatedTrack* const found = host.trackAt(track, telling->at);
            return found == nullptr ? std::string() : host.displayOf(*found);
        };
        Tracks there = shown.byPosition(client(), strip, telling->at);
        if (const ShownTrack* display = host.shownOn(strip, telling->at)) there.push_back(display->track);
        std::ranges::copy_if(there, std::back_inserter(tracks), [&, named = tracks](int track) {
            return std::ranges::find(named, displayAt(track), displayAt) != named.end();
        });
        return tracks;
    }

    // Names and faders of one burst come one after the other, from the host and to the client.
    bool isJustShown(int strip) const {
        if (shown.changedAt(client(), strip, telling->at)) return true;
        const ShownTrack* display = host.shownOn(strip, telling->at);
        return display != nullptr && (display->at == telling->at || !isNameOf(*display));
    }

    // Another text than the track's name, as its mode or a value, does not tell which track it is.
    bool isNameOf(const ShownTrack& display) const {
        const SimulatedTrack* const track = host.trackAt(display.track, telling->at);
        return track == nullptr || host.displayOf(*track) == display.text;
    }

    // What the client asked for itself, for that track.
    bool isItsOwn(int strip, int value, const Tracks& tracks) const {
        const auto moves = asked.find({strip, value});
        return moves != asked.end() && std::ranges::any_of(moves->second, [&](const ReceivedDatagram* move) {
                   const Tracks then = shown.onStrip(move->sender, strip, move->at);
                   return move->at <= telling->at && std::ranges::find_first_of(then, tracks) != then.end();
               });
    }

    Tracks onStripOrGoing(int strip) const {
        Tracks tracks = shown.onStrip(client(), strip, telling->at);
        const Tracks going = shown.byPosition(client(), strip, telling->at);
        tracks.insert(tracks.end(), going.begin(), going.end());
        return tracks;
    }

    void look(const remote::FullName& full) {
        if (full.name.empty()) return;
        const Tracks tracks = onStripOrGoing(full.strip.index());
        if (!anyEverWas(tracks, [&](const SimulatedTrack& track) { return track.name == full.name; }))
            complain("strip " + std::to_string(full.strip.index()) + " called " + full.name, tracks);
    }

    void look(const remote::Colors& colors) {
        for (std::size_t strip = 0; strip < colors.strips.size(); ++strip) {
            if (!colors.strips[strip]) continue;
            const Tracks tracks = onStripOrGoing(static_cast<int>(strip));
            const auto isSo = [&](const SimulatedTrack& track) {
                return colorOf(track.color) == *colors.strips[strip];
            };
            if (!anyEverWas(tracks, isSo)) complain("the colour of strip " + std::to_string(strip), tracks);
        }
    }

    // Where the row has no full name, what the displays call its track may be several tracks' name.
    Tracks namedInRow(const remote::TrackRow& row) const {
        Tracks tracks = shown.inRow(client(), row.index, telling->at);
        for (const ShownTrack& display : evidence.record.shown)
            if (display.at <= telling->at && display.text == row.name) tracks.push_back(display.track);
        std::ranges::sort(tracks);
        const auto repeated = std::ranges::unique(tracks);
        tracks.erase(repeated.begin(), repeated.end());
        return tracks;
    }

    void look(const remote::TrackRow& row) {
        const Tracks tracks = namedInRow(row);
        const std::string which = " in row " + std::to_string(row.index) + ", " + row.name;
        const auto expect = [&](const std::string& what, auto isSo) {
            if (!anyEverWas(tracks, isSo)) complain(what + which, tracks);
        };
        if (tracks.empty() && !row.name.empty()) return complain("a name that no track has" + which, tracks);
        if (row.fader)
            expect("the fader " + std::to_string(row.fader->raw()),
                   [&](const SimulatedTrack& track) { return host.faderOf(track) == row.fader->raw(); });
        if (row.color)
            expect("the colour", [&](const SimulatedTrack& track) { return colorOf(track.color) == *row.color; });
        if (!row.comment.empty())
            expect("the comment", [&](const SimulatedTrack& track) { return track.comment == row.comment; });
        if (row.inputMonitor) expect("the monitor", [](const SimulatedTrack& track) { return track.inputMonitor; });
        if (row.record) expect("the record enable", [](const SimulatedTrack& track) { return track.recordArmed; });
        if (row.solo) expect("the solo", [](const SimulatedTrack& track) { return track.solo; });
        if (row.select) expect("the select", [](const SimulatedTrack& track) { return track.selected; });
    }

    void complain(const std::string& what, const Tracks& tracks) {
        std::string text =
            what + " at " + std::to_string(inSeconds(telling->at.time_since_epoch())) + " s: not of track";
        for (const int track : tracks)
            text += " " + std::to_string(track);
        violations.push_back(text);
    }

    const Evidence& evidence;
    const HostTimeline host;
    const ShownTracks& shown;
    std::map<std::pair<int, int>, std::vector<const ReceivedDatagram*>> asked; // fader moves by strip and value
    std::map<std::size_t, std::map<int, Bytes>> lastRows;                      // by client and session index
    const SentDatagram* telling = nullptr;
    std::vector<std::string> violations;
};

} // namespace

std::vector<std::string> checkTellings(const Scenario& scenario, const Evidence& evidence, const ShownTracks& shown) {
    return TellingsChecker(scenario, evidence, shown).check();
}

} // namespace lumbrine::simulation
