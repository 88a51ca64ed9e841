#include "tests/simulation/shown_tracks.h"

#include "remote/receiver_message.h"
#include "tests/simulation/host_truth.h"

#include <algorithm>
#include <set>

namespace lumbrine::simulation {

namespace {

using Tracks = ShownTracks::Tracks;

void unite(Tracks& tracks, const Tracks& others) {
    for (const int track : others)
        if (std::ranges::find(tracks, track) == tracks.end()) tracks.push_back(track);
}

// The last entry that began before, and those that began at that moment.
template <typename Entry, typename Take>
void forEachAt(const std::vector<Entry>& entries, TimePoint at, TimePoint Entry::* time, Take take) {
    auto entry = std::ranges::lower_bound(entries, at, {}, time);
    if (entry != entries.begin()) --entry;
    for (; entry != entries.end() && (*entry).*time <= at; ++entry)
        take(*entry);
}

// Whether a time lies in a job that knows where it leads, or may, since its end was seen only by and by. Asked for
// times that only grow.
class JobTimes {
public:
    JobTimes(const std::vector<JobRun>& runs, TimePoint JobRun::* over) {
        for (const JobRun& run : runs)
            if (run.job != Job::tap) stretches.push_back({run.before, run.*over});
        std::ranges::sort(stretches, {}, &Stretch::first);
    }

    bool holds(TimePoint at) {
        while (next < stretches.size() && stretches[next].first <= at)
            end = std::max(end, stretches[next++].last);
        return at <= end;
    }

private:
    std::vector<Stretch> stretches;
    std::size_t next = 0;
    TimePoint end = distantPast;
};

std::map<std::string, std::string> devicesIn(const std::vector<ReceivedDatagram>& received) {
    std::map<std::string, std::string> devices;
    for (const ReceivedDatagram& datagram : received) {
        const Bytes& bytes = datagram.bytes;
        if (bytes.size() < 10 || bytes[0] != 1 || bytes[1] != 0) continue;
        std::string token(bytes.begin() + 2, bytes.begin() + 10);
        if (token != std::string(8, '\0')) devices.emplace(datagram.sender, std::move(token));
    }
    return devices;
}

std::string deviceOf(const std::map<std::string, std::string>& devices, const std::string& address) {
    const auto device = devices.find(address);
    return device == devices.end() ? address : device->second;
}

} // namespace

ShownTracks::ShownTracks(const SentDatagrams& sent, const HostRecord& record, const std::vector<JobRun>& runs,
                         const std::vector<ReceivedDatagram>& received)
    : host(record), devices(devicesIn(received)) {
    for (const TrackState& state : host.states)
        called[state.track.name].push_back({state.at, state.track.id});
    first.fill(TimePoint::max());
    for (const ShownTrack& display : host.shown)
        called[trimmed(display.text)].push_back({display.at, display.track});
    JobTimes jobs(runs, &JobRun::after);
    JobTimes sureJobs(runs, &JobRun::last);
    auto shown = host.shown.begin();
    auto bank = host.banks.begin();
    bool pressed = false;
    const auto showUntil = [&](TimePoint end) {
        for (; shown != host.shown.end() && shown->at <= end; ++shown) {
            for (; bank != host.banks.end() && bank->at <= shown->at; ++bank)
                pressed = bank->pressed.has_value();
            display({shown->at, shown->strip, shown->track, trimmed(shown->text)}, pressed && jobs.holds(shown->at));
        }
    };
    for (const SentDatagram& datagram : sent.list) {
        showUntil(datagram.at);
        const InJob job = sureJobs.holds(datagram.at) ? InJob::surely
                          : jobs.holds(datagram.at)   ? InJob::perhaps
                                                      : InJob::no;
        tell(clients[deviceOf(devices, sent.peers[datagram.peer])], datagram, job);
    }
    showUntil(TimePoint::max());
}

const ShownTracks::Client* ShownTracks::find(const std::string& address) const {
    const auto client = clients.find(deviceOf(devices, address));
    return client == clients.end() ? nullptr : &client->second;
}

void ShownTracks::display(const ShownTrack& shown, bool byJob) {
    const auto strip = static_cast<std::size_t>(shown.strip);
    displays[strip].push_back(shown);
    if (byJob) return;
    for (auto& [key, client] : clients) {
        std::vector<Shown>& entries = client.strips[strip];
        if (entries.empty() || entries.back().text != shown.text) continue;
        Shown both{shown.at, shown.text, entries.back().tracks};
        unite(both.tracks, {shown.track});
        if (both.tracks.size() > entries.back().tracks.size()) entries.push_back(std::move(both));
    }
}

void ShownTracks::tell(Client& client, const SentDatagram& datagram, InJob job) {
    const auto message = remote::parseReceiverMessage(datagram.bytes);
    if (!message) return;
    if (const auto* name = std::get_if<remote::TrackName>(&*message)) {
        tellName(client, name->strip.index(), trimmed(name->name), datagram.at, job);
    } else if (const auto* position = std::get_if<remote::BankPos>(&*message)) {
        client.positions.push_back({datagram.at, position->offset});
    } else if (const auto* row = std::get_if<remote::TrackRow>(&*message)) {
        tellRow(client, row->index, row->name, datagram.at);
    }
}

void ShownTracks::tellName(Client& client, int strip, std::string text, TimePoint at, InJob job) {
    client.named.push_back(at);
    TimePoint& firstTime = first[static_cast<std::size_t>(strip)];
    if (!text.empty()) firstTime = std::min(firstTime, at);
    std::vector<Shown>& entries = client.strips[static_cast<std::size_t>(strip)];
    const bool same = !entries.empty() && entries.back().text == text;
    if (same && job == InJob::surely) return;
    Tracks tracks;
    const auto& shown = displays[static_cast<std::size_t>(strip)];
    const auto last = std::find_if(shown.rbegin(), shown.rend(), [&](const auto& now) { return now.text == text; });
    if (last != shown.rend()) tracks.push_back(last->track);
    if (same && job == InJob::perhaps) unite(tracks, entries.back().tracks);
    if (!same || entries.back().tracks != tracks) entries.push_back({at, std::move(text), std::move(tracks)});
}

// A full name, or what a display has of it.
void ShownTracks::tellRow(Client& client, int index, const std::string& name, TimePoint at) const {
    std::vector<Shown>& entries = client.rows[index];
    std::set<int> named;
    if (const auto tracks = called.find(name); tracks != called.end())
        for (const auto& [since, track] : tracks->second)
            if (since <= at) named.insert(track);
    Shown entry{at, name, {named.begin(), named.end()}};
    const auto list = std::ranges::upper_bound(host.lists, at, {}, &TrackList::at);
    if (list != host.lists.begin())
        if (const auto& ids = std::prev(list)->ids; static_cast<std::size_t>(index) < ids.size())
            if (const int there = ids[static_cast<std::size_t>(index)]; named.contains(there)) entry.tracks = {there};
    const bool same = !entries.empty() && entries.back().text == name;
    if (!same || (entry.tracks.size() == 1 && entry.tracks != entries.back().tracks))
        entries.push_back(std::move(entry));
}

Tracks ShownTracks::onStrip(const std::string& client, int strip, TimePoint at) const {
    Tracks tracks;
    const Client* const found = find(client);
    if (found == nullptr) return tracks;
    forEachAt(found->strips[static_cast<std::size_t>(strip)], at, &Shown::from,
              [&](const Shown& shown) { unite(tracks, shown.tracks); });
    return tracks;
}

Tracks ShownTracks::unseen(const std::string& client, int strip, TimePoint at) const {
    Tracks tracks;
    const auto i = static_cast<std::size_t>(strip);
    const Client* const found = find(client);
    if (found != nullptr && !found->strips[i].empty() && found->strips[i].front().from < at) return tracks;
    forEachAt(displays[i], at, &ShownTrack::at, [&](const ShownTrack& shown) { unite(tracks, {shown.track}); });
    if (tracks.empty() && !displays[i].empty()) tracks = {displays[i].front().track};
    return tracks;
}

bool ShownTracks::changedAt(const std::string& client, int strip, TimePoint at) const {
    const Client* const found = find(client);
    return found != nullptr &&
           std::ranges::binary_search(found->strips[static_cast<std::size_t>(strip)], at, {}, &Shown::from);
}

Tracks ShownTracks::underFinger(const std::string& client, int strip, TimePoint touched, TimePoint at) const {
    Tracks tracks = onStrip(client, strip, touched);
    const Client* const found = find(client);
    if (found == nullptr) return tracks;
    const auto& entries = found->strips[static_cast<std::size_t>(strip)];
    auto entry = std::ranges::upper_bound(entries, touched, {}, &Shown::from);
    if (entry == entries.begin()) return tracks;
    for (const std::string& text = std::prev(entry)->text;
         entry != entries.end() && entry->from <= at && entry->text == text; ++entry)
        unite(tracks, entry->tracks);
    return tracks;
}

Tracks ShownTracks::byPosition(const std::string& client, int strip, TimePoint at) const {
    Tracks tracks;
    const Client* const found = find(client);
    if (found == nullptr) return tracks;
    forEachAt(found->positions, at, &Position::from, [&](const Position& position) {
        if (!position.offset) return;
        forEachAt(host.lists, at, &TrackList::at, [&](const TrackList& list) {
            const auto index = static_cast<std::size_t>(*position.offset + strip);
            if (index < list.ids.size()) unite(tracks, {list.ids[index]});
        });
    });
    return tracks;
}

Tracks ShownTracks::inRow(const std::string& client, int index, TimePoint at) const {
    Tracks tracks;
    const Client* const found = find(client);
    if (found == nullptr || !found->rows.contains(index)) return tracks;
    forEachAt(found->rows.at(index), at, &Shown::from, [&](const Shown& shown) { unite(tracks, shown.tracks); });
    return tracks;
}

Tracks ShownTracks::unseenInRow(const std::string& client, int index, TimePoint at) const {
    Tracks tracks;
    const Client* const found = find(client);
    if (found != nullptr && found->rows.contains(index) && found->rows.at(index).front().from < at) return tracks;
    forEachAt(host.lists, at, &TrackList::at, [&](const TrackList& list) {
        if (static_cast<std::size_t>(index) < list.ids.size())
            unite(tracks, {list.ids[static_cast<std::size_t>(index)]});
    });
    return tracks;
}

bool ShownTracks::wasToldNames(const std::string& client, TimePoint from, TimePoint until) const {
    const Client* const found = find(client);
    if (found == nullptr) return false;
    const auto name = std::ranges::lower_bound(found->named, from);
    return name != found->named.end() && *name <= until;
}

} // namespace lumbrine::simulation
