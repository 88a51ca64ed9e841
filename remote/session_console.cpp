#include "remote/session_console.h"

#include "remote/track_facts.h"

#include <algorithm>
#include <utility>

namespace lumbrine::remote {
namespace {

constexpr int mostCaptured = 255; // the most tracks in one command

bool isMuted(const SessionPicture& picture, Member track) {
    return factsOf(picture, picture.bankOffset, track).lights.mute ==
           Light::on; // blinking means muted by the solo of another track
}

bool isSoloed(const SessionPicture& picture, Member track) {
    return factsOf(picture, picture.bankOffset, track).lights.solo;
}

// Splits the members, because one command has at most maxMembers.
template <typename T, typename Send>
void inGroups(std::span<const T> members, Send send) {
    for (; !members.empty(); members = members.subspan(std::min(members.size(), maxMembers)))
        send(members.first(std::min(members.size(), maxMembers)));
}

} // namespace

void SessionConsole::setLines(int count) {
    lines = std::max(1, count);
}

SessionList SessionConsole::list() const {
    const int tracks = client.picture().trackCount;
    SessionList now = state;
    now.marked.erase(now.marked.lower_bound(static_cast<std::uint16_t>(tracks)), now.marked.end());
    const int cursor = std::clamp<int>(now.cursor, 0, std::max(0, tracks - 1));
    const int lowest = std::max(0, std::min(cursor, tracks - lines));
    now.cursor = static_cast<std::uint16_t>(cursor);
    now.first = static_cast<std::uint16_t>(std::clamp<int>(now.first, std::max(0, cursor - lines + 1), lowest));
    return now;
}

void SessionConsole::jumpTo(int track) {
    state.first = static_cast<std::uint16_t>(std::clamp(track - lines / 3, 0, 0xFFFF));
    goTo(track);
}

void SessionConsole::goTo(int track) {
    state.cursor = static_cast<std::uint16_t>(std::clamp(track, 0, 0xFFFF));
    state = list();
}

bool SessionConsole::pressListKey(Key key) {
    state = list();
    switch (key.special) {
    case SpecialKey::up:
        return goTo(state.cursor - 1), true;
    case SpecialKey::down:
        return goTo(state.cursor + 1), true;
    case SpecialKey::pageUp:
        return goTo(state.cursor - lines), true;
    case SpecialKey::pageDown:
        return goTo(state.cursor + lines), true;
    case SpecialKey::home:
        return goTo(0), true;
    case SpecialKey::end:
        return goTo(0xFFFF), true;
    default:
        break;
    }
    if (key.character == ' ') return toggleMark(), true;
    if (key.character == 'u') return state.marked.clear(), true;
    return false;
}

void SessionConsole::pressCommandKey(Key key) {
    state = list();
    if (client.picture().trackCount == 0) return;
    if (key.special == SpecialKey::enter) client.send(seekBankCommand(state.cursor));
    if (key.character == 'm') toggle(groupMuteCommand, isMuted);
    if (key.character == 's') toggle(groupSoloCommand, isSoloed);
    if (key.character == 'c') capturePage();
}

void SessionConsole::toggleMark() {
    if (client.picture().trackCount == 0) return;
    if (!state.marked.erase(state.cursor)) state.marked.insert(state.cursor);
    goTo(state.cursor + 1);
}

void SessionConsole::toggle(GroupSwitch command, bool (*isOn)(const SessionPicture& picture, Member track)) {
    const std::vector<Member> tracks = members();
    const bool all = std::ranges::all_of(tracks, [&](Member track) { return isOn(client.picture(), track); });
    inGroups(std::span<const Member>(tracks), [&](auto group) { client.send(command(!all, group)); });
}

void SessionConsole::capturePage() {
    const int count = std::min({lines, client.picture().trackCount - state.first, mostCaptured});
    client.send(visibleRangeCommand(state.first, static_cast<std::uint8_t>(count)));
}

void SessionConsole::setFaders(FaderValue value) {
    std::vector<std::pair<Member, FaderValue>> entries;
    for (const Member track : members())
        entries.emplace_back(track, value);
    inGroups(std::span<const std::pair<Member, FaderValue>>(entries),
             [&](auto group) { client.send(groupFadersCommand(group)); });
}

void SessionConsole::setAutoMode(AutoModeKey key) {
    const std::vector<Member> tracks = members();
    inGroups(std::span<const Member>(tracks), [&](auto group) { client.send(groupAutoModeCommand(key, group)); });
}

std::vector<Member> SessionConsole::members() const {
    const SessionList now = list();
    if (client.picture().trackCount == 0) return {};
    if (now.marked.empty()) return {now.cursor};
    return {now.marked.begin(), now.marked.end()};
}

} // namespace lumbrine::remote
