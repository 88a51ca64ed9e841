#include "tests/simulation/host_habits.h"

#include "tests/simulation/scenario.h"

namespace lumbrine::simulation {

namespace {

constexpr auto packMessages = [](SeededRandom& chance, SimulatorOptions& options) {
    options.packets.messagesPerPacket = 2 + static_cast<int>(chance.below(20));
};

constexpr auto beIrregular = [](SeededRandom& chance, SimulatorOptions& options) {
    options.pingJitter = seconds(0.1) * static_cast<int>(1 + chance.below(5));
};

constexpr auto reactSlowly = [](SeededRandom& chance, SimulatorOptions& options) {
    options.latency = seconds(0.5) + seconds(0.1) * static_cast<int>(chance.below(6));
};

// It needs its time to see a reply. A surface that it gives up cannot know that it has to ask for everything again.
constexpr auto expectPromptReplies = [](SeededRandom& chance, SimulatorOptions& options) {
    if (options.fill != Fill::replyAndReset) return;
    options.hostTimeout = options.latency + seconds(0.1) * static_cast<int>(1 + chance.below(5));
};

constexpr auto beUnfinished = [](SeededRandom& chance, SimulatorOptions& options) {
    options.scripting.answersInProgress = true;
    options.scripting.unfinished = chance.oneIn(2) ? Unfinished::queued : Unfinished::pending;
};

constexpr auto flashUnevenly = [](SeededRandom& chance, SimulatorOptions& options) {
    options.ledOn = chance.oneIn(2) ? seconds(0.25) : seconds(0.8);
    options.ledOff = seconds(1.05) - options.ledOn;
};

constexpr auto spellDifferently = [](SeededRandom& chance, SimulatorOptions& options) {
    constexpr std::array unknownSessions{UnknownSessionError::unknownError, UnknownSessionError::invalidParameter,
                                         UnknownSessionError::forbidden, UnknownSessionError::sessionID};
    ScriptingOptions& scripting = options.scripting;
    scripting.attributes = static_cast<AttributeSpelling>(chance.below(3));
    scripting.errorTypes = static_cast<ErrorTypeSpelling>(chance.below(4));
    scripting.unknownSession = unknownSessions[chance.below(unknownSessions.size())];
    scripting.emptyListAsObject = chance.oneIn(2);
    scripting.statsForPages = chance.oneIn(2);
    scripting.camelCase = chance.oneIn(3);
    scripting.readyCheckFails = chance.oneIn(2);
    scripting.closedSessionListsNothing = chance.oneIn(2);
};

constexpr auto takeDialogs = [](SeededRandom& chance, SimulatorOptions& options) {
    options.scripting.inDialog = static_cast<DialogAnswer>(chance.below(3));
    options.pingInDialog = !chance.oneIn(3);
};

// The displays are blank between two sessions: no workstation opens one in no time.
constexpr auto openSessions = [](SeededRandom& chance, SimulatorOptions& options) {
    options.sessionOpensAfter = seconds(0.5) * (1 + static_cast<int>(chance.below(6)));
};

} // namespace

const std::vector<HostHabit>& hostHabits() {
    static const std::vector<HostHabit> habits{
        // ---- Bytes and packets.
        {"packed-messages", 5, packMessages},
        {"realtime-between", 5, [](auto&, auto& options) { options.packets.realtime = RealtimeBytes::between; }},
        {"realtime-within", 6, [](auto&, auto& options) { options.packets.realtime = RealtimeBytes::within; }},
        {"cut-sysex", 4, [](auto&, auto& options) { options.packets.cutSysEx = true; }},
        {"ping-note-off", 8,
         [](auto& chance, auto& options) {
             options.packets.ping = chance.oneIn(2) ? PingForm::noteOff : PingForm::noteOffWithoutVelocity;
         }},

        {"running-status", 12, [](auto&, auto& options) { options.runningStatus = true; }},
        {"packed-displays", 12, [](auto&, auto& options) { options.displaysPerSysEx = 9; }},

        // ---- Presence and time.
        {"irregular-pings", 4, beIrregular},
        {"late-pings", 6, [](auto&, auto& options) { options.latePingOneIn = 5; }},
        {"reset-goodbye", 4, [](auto&, auto& options) { options.resetIsGoodbye = true; }},
        {"fill-at-reset", 8, [](auto&, auto& options) { options.fill = Fill::reset; }},
        {"fill-at-session-open", 8, [](auto&, auto& options) { options.fill = Fill::sessionOpen; }},
        {"slow-host", 10, reactSlowly},
        {"prompt-replies", 6, expectPromptReplies},

        // ---- Displays, LEDs and meters.
        {"mode-words", 6, [](auto&, auto& options) { options.trimWords = TrimWords::alone; }},
        {"values-over-names", 6,
         [](auto& chance, auto& options) {
             options.valuesShown = ValuesShown::always;
             options.valueShownFor = seconds(0.3) + seconds(0.1) * static_cast<int>(chance.below(7));
         }},
        {"hui-characters", 5, [](auto&, auto& options) { options.nonASCII = NonASCIIRule::huiCharacters; }},
        {"unlit-auto-led", 4, [](auto&, auto& options) { options.autoLED = AutoLED::unlit; }},
        {"uneven-flash", 5, flashUnevenly},
        {"unmarked-ring-centre", 5, [](auto&, auto& options) { options.ringMarksCentre = false; }},
        {"held-clips", 5, [](auto&, auto& options) { options.clipHolds = true; }},

        // ---- Faders, pots and banks.
        {"untouched-ignored", 6, [](auto&, auto& options) { options.untouchedMove = UntouchedMove::ignored; }},
        {"untouched-pulled-back", 6, [](auto&, auto& options) { options.untouchedMove = UntouchedMove::pulledBack; }},
        {"few-clicks", 6, [](auto&, auto& options) { options.mostClicks = 0x2D; }},
        {"unaligned-banks", 6, [](auto&, auto& options) { options.bankLeftAligns = options.bankRightAligns = false; }},

        // ---- The scripting service.
        {"scripting-spellings", 2, spellDifferently},
        {"older-service", 10,
         [](auto& chance, auto& options) { options.scripting.version = 1 + static_cast<int>(chance.below(4)); }},
        {"kinds-of-tracks", 4, nullptr},

        // ---- What the user does; see HostTroubles.
        {"status-in-progress", 6, [](auto&, auto& options) { options.scripting.answersInProgress = true; }},
        {"status-queued", 8, beUnfinished},
        {"deaf-service", 6, nullptr},
        {"session-closes", 8, nullptr},
        {"session-exchanges", 8, openSessions},
        {"session-templates", 8, openSessions},
        {"dialogs", 8, takeDialogs},
    };
    return habits;
}

std::vector<std::string_view> chooseHostHabits(std::uint64_t seed, const Switches& switches,
                                               SimulatorOptions& options) {
    std::vector<std::string_view> chosen;
    for (const HostHabit& habit : hostHabits()) {
        SeededRandom chance = chanceOf(seed, habit.name);
        if (!switches.isOn(habit.name) || !chance.oneIn(habit.oneIn)) continue;
        if (habit.choose != nullptr) habit.choose(chance, options);
        chosen.push_back(habit.name);
    }
    return chosen;
}

} // namespace lumbrine::simulation
