#include "simulator/user_track_commands.h"

#include <array>
#include <cstdio>

namespace lumbrine::user_command {

namespace {

// Reads the number of a track and calls `edit` with the session and the ID of that track.
template <typename Edit>
Result editTrack(SimulatedProTools& proTools, Arguments& arguments, Edit edit) {
    Result result = wrong();
    proTools.edit([&](SimulatedSession& session) {
        const auto index = arguments.trackIndex(session);
        if (!index) {
            result = Failure("no such track");
            return;
        }
        result = edit(session, session.tracks()[*index].id);
    });
    return result;
}

std::string trackLine(const SimulatedTrack& track, std::size_t number) {
    std::array<char, 64> values{};
    std::snprintf(values.data(), values.size(), "%4zu  %5.3f  %c%c%c%c  %s  ", number, track.fader.unit(),
                  track.mute ? 'M' : '-', track.solo ? 'S' : '-', track.recordArmed ? 'R' : '-',
                  track.selected ? '*' : '-', track.stereo ? "stereo" : "mono  ");
    return values.data() + track.name + (track.hidden ? "  (hidden)" : "");
}

} // namespace

Result toggle(SimulatedProTools& proTools, Arguments& arguments, bool SimulatedTrack::* flag) {
    return editTrack(proTools, arguments, [flag](SimulatedSession& session, int id) -> Result {
        session.change(id, [flag](SimulatedTrack& track) { track.*flag = !(track.*flag); });
        return {};
    });
}

Result rename(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        if (arguments.atEnd()) return wrong();
        session.rename(id, std::string(arguments.remaining()));
        return {};
    });
}

Result comment(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        session.change(id, [&](SimulatedTrack& track) { track.comment = arguments.remaining(); });
        return {};
    });
}

Result add(SimulatedProTools& proTools, Arguments& arguments) {
    if (arguments.atEnd()) return wrong();
    SimulatedTrack track;
    track.name = arguments.remaining();
    proTools.edit([&](SimulatedSession& session) { session.add(std::move(track)); });
    return {};
}

Result insert(SimulatedProTools& proTools, Arguments& arguments) {
    const auto number = arguments.number<std::size_t>();
    if (!number || *number < 1 || arguments.atEnd()) return wrong();
    SimulatedTrack track;
    track.name = arguments.remaining();
    proTools.edit([&](SimulatedSession& session) { session.add(std::move(track), *number - 1); });
    return {};
}

Result remove(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [](SimulatedSession& session, int id) -> Result {
        session.remove(id);
        return {};
    });
}

Result move(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const auto index = arguments.trackIndex(session);
        if (!index) return Failure("no such place");
        session.move(id, *index);
        return {};
    });
}

Result select(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [](SimulatedSession& session, int id) -> Result {
        session.select(id, false);
        return {};
    });
}

Result fader(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const auto value = arguments.within(0, 1);
        if (!value) return wrong();
        session.change(id, [&](SimulatedTrack& track) { track.fader = FaderValue::ofUnit(*value); });
        return {};
    });
}

Result pan(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const auto left = arguments.within(-100, 100);
        if (!left) return wrong();
        const auto right = arguments.atEnd() ? std::optional(session.find(id)->panRight) : arguments.within(-100, 100);
        if (!right) return wrong();
        session.change(id, [&](SimulatedTrack& track) {
            track.panLeft = *left;
            track.panRight = *right;
        });
        return {};
    });
}

Result automation(SimulatedProTools& proTools, Arguments& arguments) {
    constexpr std::array<std::string_view, 6> names{"read", "touch", "latch", "write", "off", "touchlatch"};
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const auto mode = std::ranges::find(names, arguments.word());
        if (mode == names.end()) return wrong();
        session.change(id, [&](SimulatedTrack& track) {
            track.automation = static_cast<SimulatedTrack::Automation>(mode - names.begin());
        });
        return {};
    });
}

Result color(SimulatedProTools& proTools, Arguments& arguments) {
    constexpr std::size_t digits = 6;
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const std::string_view value = arguments.word();
        if (value.size() != digits || value.find_first_not_of("0123456789abcdef") != value.npos) return wrong();
        session.change(id, [&](SimulatedTrack& track) { track.color = "#ff" + std::string(value); });
        return {};
    });
}

Result fold(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [](SimulatedSession& session, int id) -> Result {
        if (!session.find(id)->isFolder) return Failure("that track is no folder");
        session.change(id, [](SimulatedTrack& track) { track.closed = !track.closed; });
        return {};
    });
}

Result list(SimulatedProTools& proTools, Arguments&) {
    std::string list;
    const SimulatedSession session = proTools.session();
    for (std::size_t i = 0; i < session.tracks().size(); ++i)
        list += (i == 0 ? "" : "\n") + trackLine(session.tracks()[i], i + 1);
    return list;
}

} // namespace lumbrine::user_command
