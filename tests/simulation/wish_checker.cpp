#include "tests/simulation/wish_checker.h"

#include "remote/receiver_message.h"
#include "tests/simulation/surface_wire.h"

#include <algorithm>
#include <map>
#include <optional>

namespace lumbrine::simulation {

namespace {

using Tracks = ShownTracks::Tracks;
using Wish = SetterRequest::Kind;

std::optional<Wish> kindOf(std::int32_t command) {
    switch (command) {
    case 85:
        return Wish::mute;
    case 86:
        return Wish::solo;
    case 90:
        return Wish::inputMonitor;
    default:
        return std::nullopt;
    }
}

std::string wordFor(const HostWish& wish) {
    return "command " + std::to_string(wish.command) + (wish.enabled ? ", on," : ", off,") + " at " +
           timeText(wish.at) + " came to track " + std::to_string(wish.track);
}

class WishChecker {
public:
    WishChecker(const Evidence& given, const ShownTracks& shownTracks, const Acceptance& whoAsked,
                const Requests& asked)
        : evidence(given), shown(shownTracks), acceptance(whoAsked), requests(asked) {}

    std::vector<std::string> checkTracks() {
        for (const HostWish& wish : evidence.record.wishes) {
            const auto isFor = [&](const SetterRequest& request) { return asksFor(request, wish); };
            const auto isMeant = [&](const SetterRequest& request) {
                return isFor(request) && means(meantBy(request), wish);
            };
            if (std::ranges::any_of(requests.setters, isMeant)) continue;
            const bool asked = std::ranges::any_of(requests.setters, isFor);
            violations.push_back(wordFor(wish) + (asked ? ", which no client was shown" : ", which nobody asked for"));
        }
        return std::move(violations);
    }

    std::vector<std::string> checkToggles() {
        for (const HostWish& wish : evidence.record.wishes) {
            if (kindOf(wish.command) != Wish::inputMonitor) continue;
            bool asked = false;
            const bool right = std::ranges::any_of(requests.setters, [&](const SetterRequest& request) {
                if (!asksFor(request, wish) || !means(meantBy(request), wish)) return false;
                asked = true;
                return mayHaveBeenShown(request, !wish.enabled);
            });
            if (asked && !right) violations.push_back(wordFor(wish) + ", whose client had been shown it so already");
        }
        return std::move(violations);
    }

private:
    static bool asksFor(const SetterRequest& request, const HostWish& wish) {
        return request.kind == kindOf(wish.command) && request.at <= wish.at &&
               (request.kind == Wish::inputMonitor || request.enabled == wish.enabled);
    }

    const std::string& clientOf(const SetterRequest& request) const {
        return std::ranges::find(acceptance.accepted, request.at, &ReceivedDatagram::at)->sender;
    }

    Tracks meantBy(const SetterRequest& request) const {
        const std::string& client = clientOf(request);
        Tracks tracks;
        const auto add = [&](const Tracks& more) { tracks.insert(tracks.end(), more.begin(), more.end()); };
        for (const int member : request.members) {
            add(shown.inRow(client, member, request.at));
            add(shown.unseenInRow(client, member, request.at));
        }
        if (request.strip >= 0) {
            add(shown.onStrip(client, request.strip, request.at));
            add(shown.unseen(client, request.strip, request.at));
            add(shown.byPosition(client, request.strip, request.at));
        }
        return tracks;
    }

    bool means(const Tracks& tracks, const HostWish& wish) const {
        return std::ranges::any_of(tracks, [&](int track) { return track == wish.track || isReplaced(track, wish); });
    }

    // Another track has the name of one that is no longer in the session.
    bool isReplaced(int track, const HostWish& wish) const {
        const auto list = std::ranges::upper_bound(evidence.record.lists, wish.at, {}, &TrackList::at);
        if (list == evidence.record.lists.begin()) return false;
        const std::vector<int>& ids = std::prev(list)->ids;
        return std::ranges::find(ids, track) == ids.end() &&
               lastNameOf(track, wish.at) == lastNameOf(wish.track, wish.at);
    }

    std::string lastNameOf(int track, TimePoint at) const {
        std::string name;
        for (const TrackState& state : evidence.record.states)
            if (state.at <= at && state.track.id == track) name = state.track.name;
        return name;
    }

    // What was told at that very moment may have come before or after the command.
    bool mayHaveBeenShown(const SetterRequest& request, bool enabled) const {
        const std::string& client = clientOf(request);
        bool last = false; // before anything is told
        bool may = false;
        for (const SentDatagram& datagram : evidence.sent.list) {
            if (datagram.at > request.at) break;
            constexpr std::uint8_t inputMons = 0x1A;
            if (datagram.type() != inputMons || evidence.sent.peers[datagram.peer] != client) continue;
            const auto message = remote::parseReceiverMessage(datagram.bytes);
            const auto* told = message ? std::get_if<remote::InputMons>(&*message) : nullptr;
            const auto strip = static_cast<std::size_t>(request.strip);
            if (told == nullptr || strip >= told->strips.size()) continue;
            if (datagram.at == request.at && last == enabled) may = true;
            last = told->strips[strip];
        }
        return may || last == enabled;
    }

    const Evidence& evidence;
    const ShownTracks& shown;
    const Acceptance& acceptance;
    const Requests& requests;
    std::vector<std::string> violations;
};

} // namespace

std::vector<std::string> checkTracksOfWishes(const Evidence& evidence, const ShownTracks& shown,
                                             const Acceptance& acceptance, const Requests& requests) {
    return WishChecker(evidence, shown, acceptance, requests).checkTracks();
}

std::vector<std::string> checkToggles(const Evidence& evidence, const ShownTracks& shown, const Acceptance& acceptance,
                                      const Requests& requests) {
    return WishChecker(evidence, shown, acceptance, requests).checkToggles();
}

} // namespace lumbrine::simulation
