#include "simulator/user_session_commands.h"

#include "simulator/default_session.h"

namespace lumbrine::user_command {

namespace {

constexpr int mostTracks = 1000;

// A different seed for each exchange: track ids are never reused.
std::uint64_t nextSeed(const SimulatedSession& now) {
    return now.tracks().empty() ? 1 : static_cast<std::uint64_t>(now.tracks().back().id) + 1;
}

Result exchange(SimulatedProTools& proTools, Arguments& arguments) {
    const auto tracks = arguments.number<int>();
    if (!tracks || *tracks < 0 || *tracks > mostTracks || !arguments.atEnd()) return wrong();
    proTools.exchangeSession(defaultSession(*tracks, nextSeed(proTools.session())));
    return {};
}

Result save(SimulatedProTools& proTools, Arguments& arguments) {
    const auto time = arguments.within(0, 3600);
    if (!time || !arguments.atEnd()) return wrong();
    proTools.saveSession(seconds(*time));
    return {};
}

} // namespace

Result session(SimulatedProTools& proTools, Arguments& arguments) {
    const std::string_view act = arguments.word();
    if (act == "exchange") return exchange(proTools, arguments);
    if (act == "save") return save(proTools, arguments);
    if (!arguments.atEnd()) return wrong();
    if (act == "open") {
        proTools.edit([](SimulatedSession& opened) { opened.open(); });
    } else if (act == "close") {
        proTools.edit([](SimulatedSession& closed) { closed.close(); });
    } else if (act == "template") {
        const SimulatedSession now = proTools.session();
        proTools.exchangeSession(sessionOfSameTemplate(now, nextSeed(now)));
    } else {
        return wrong();
    }
    return {};
}

Result dialog(SimulatedProTools& proTools, Arguments& arguments) {
    const std::string_view act = arguments.word();
    if (act == "open" && !arguments.atEnd()) {
        proTools.openDialog(std::string(arguments.remaining()));
    } else if (act == "close" && arguments.atEnd()) {
        proTools.closeDialog();
    } else {
        return wrong();
    }
    return {};
}

} // namespace lumbrine::user_command
