#include "tools/simulator_arguments.h"

#include <iterator>
#include <sstream>

namespace lumbrine {
namespace {

using testing::HasSubstr;

std::expected<SimulatorArguments, SimulatorArgumentsAnswer> read(std::vector<const char*> words) {
    return readSimulatorArguments(words);
}

// The words of a command line, with one blank between them.
std::expected<SimulatorArguments, SimulatorArgumentsAnswer> readLine(const std::string& line) {
    std::istringstream stream(line);
    const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    std::vector<const char*> pointers;
    for (const std::string& word : words)
        pointers.push_back(word.c_str());
    return read(pointers);
}

TEST(SimulatorArguments, AreWhatTheOptionsAreWhenNothingIsSaid) {
    const auto arguments = read({});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->tracks, 24);
    const SimulatorOptions standard;
    EXPECT_EQ(arguments->options.surfaces, standard.surfaces);
    EXPECT_EQ(arguments->options.latency, standard.latency);
    EXPECT_EQ(arguments->options.dumpOrder, standard.dumpOrder);
    EXPECT_EQ(arguments->options.modeShown, standard.modeShown);
}

TEST(SimulatorArguments, ReachEachOption) {
    const auto arguments =
        readLine("--tracks 200 --surfaces=2 --seed 7 --port-a X --port-b Y --ping-ms 500 "
                 "--host-timeout-ms 1500 --no-ping-without-session --dump-order "
                 "counter,globals,strips,rings,faders,displays,ping --latency-ms 2.5 --fader-echo "
                 "released --fader-bits 9 --no-groups --short-names colliding --non-ascii blank "
                 "--displays-per-sysex 8 --mode-shown-ms 300 --no-main-display --no-counter "
                 "--zone-select-once --running-status --auto-led 34 --led-on-ms 250 --led-off-ms 750 "
                 "--pan-picture spread --clicks-per-position 4 --meter-rate 30 --end-of-session blank "
                 "--bank-left plain --bank-right aligned --redraw changed --bank-width configured "
                 "--grab-ports-after-ms 9000 --drop-one-press-in 12 --restless-user-ms 4000 "
                 "--no-session");
    ASSERT_TRUE(arguments) << arguments.error().error;
    const SimulatorOptions& options = arguments->options;
    EXPECT_EQ(arguments->tracks, 200);
    EXPECT_EQ(options.surfaces, 2);
    EXPECT_EQ(options.seed, 7u);
    EXPECT_EQ(options.portNames, (std::array<std::string, 2>{"X", "Y"}));
    EXPECT_EQ(options.pingInterval, seconds(0.5));
    EXPECT_EQ(options.hostTimeout, seconds(1.5));
    EXPECT_FALSE(options.pingWithoutSession);
    EXPECT_EQ(options.dumpOrder, (std::vector{DumpPart::counter, DumpPart::globalLEDs, DumpPart::stripLEDs,
                                              DumpPart::rings, DumpPart::faders, DumpPart::displays, DumpPart::ping}));
    EXPECT_EQ(options.latency, seconds(0.0025));
    EXPECT_EQ(options.faderEcho, FaderEcho::afterRelease);
    EXPECT_EQ(options.faderBits, 9);
    EXPECT_FALSE(options.groups);
    EXPECT_EQ(options.shortNames, ShortNameRule::colliding);
    EXPECT_EQ(options.nonASCII, NonASCIIRule::blank);
    EXPECT_EQ(options.displaysPerSysEx, 8);
    EXPECT_EQ(options.modeShown, seconds(0.3));
    EXPECT_FALSE(options.mainDisplay);
    EXPECT_FALSE(options.counter);
    EXPECT_FALSE(options.repeatZoneSelect);
    EXPECT_TRUE(options.runningStatus);
    EXPECT_EQ(options.autoLED, AutoLED::green34);
    EXPECT_EQ(options.ledOn, seconds(0.25));
    EXPECT_EQ(options.ledOff, seconds(0.75));
    EXPECT_EQ(options.panPicture, RingPicture::spread);
    EXPECT_EQ(options.clicksPerRingPosition, 4);
    EXPECT_EQ(options.meterRate, 30);
    EXPECT_EQ(options.endOfSession, EndOfSession::blank);
    EXPECT_FALSE(options.bankLeftAligns);
    EXPECT_TRUE(options.bankRightAligns);
    EXPECT_FALSE(options.redrawOnBank);
    EXPECT_EQ(options.bankWidth, BankWidth::configured);
    EXPECT_EQ(options.grabPortsAfter, seconds(9));
    EXPECT_EQ(options.dropOnePressIn, 12);
    EXPECT_EQ(options.restlessUserEvery, seconds(4));
    EXPECT_FALSE(options.opensSession);
}

TEST(SimulatorArguments, ReachEachOptionOfPingsAndPackets) {
    const auto arguments =
        read({"--ping-jitter-ms=200", "--late-ping-one-in=7", "--late-ping-ms=900", "--messages-per-packet=5",
              "--realtime-bytes=within", "--ping-form=off", "--cut-sysex"});
    ASSERT_TRUE(arguments) << arguments.error().error;
    const SimulatorOptions& options = arguments->options;
    EXPECT_EQ(options.pingJitter, seconds(0.2));
    EXPECT_EQ(options.latePingOneIn, 7);
    EXPECT_EQ(options.latePing, seconds(0.9));
    EXPECT_EQ(options.packets.messagesPerPacket, 5);
    EXPECT_EQ(options.packets.realtime, RealtimeBytes::within);
    EXPECT_EQ(options.packets.ping, PingForm::noteOff);
    EXPECT_TRUE(options.packets.cutSysEx);
}

TEST(SimulatorArguments, ReachEachOptionOfWhatAHostMayChoose) {
    const auto arguments = read({"--reset-is-goodbye", "--fill=session", "--untouched-moves=pulled-back",
                                 "--most-clicks=45", "--trim-words=alone", "--values=always", "--value-shown-ms=300",
                                 "--no-ring-centre", "--clip-holds", "--non-ascii=hui"});
    ASSERT_TRUE(arguments) << arguments.error().error;
    const SimulatorOptions& options = arguments->options;
    EXPECT_TRUE(options.resetIsGoodbye);
    EXPECT_EQ(options.fill, Fill::sessionOpen);
    EXPECT_EQ(options.untouchedMove, UntouchedMove::pulledBack);
    EXPECT_EQ(options.mostClicks, 45);
    EXPECT_EQ(options.trimWords, TrimWords::alone);
    EXPECT_EQ(options.valuesShown, ValuesShown::always);
    EXPECT_EQ(options.valueShownFor, seconds(0.3));
    EXPECT_FALSE(options.ringMarksCentre);
    EXPECT_TRUE(options.clipHolds);
    EXPECT_EQ(options.nonASCII, NonASCIIRule::huiCharacters);
}

TEST(SimulatorArguments, ReachEachOptionOfDialogsAndOfWhatServicesSay) {
    const auto arguments =
        read({"--dialog-freezes-nothing", "--no-ping-in-dialog", "--session-opens-ms=500", "--in-dialog=defer",
              "--in-progress", "--stats-for-pages", "--service-version=4", "--unknown-session=127",
              "--ready-check-fails", "--closed-lists-nothing", "--error-types=prefixed"});
    ASSERT_TRUE(arguments) << arguments.error().error;
    const SimulatorOptions& options = arguments->options;
    EXPECT_FALSE(options.dialogFreezes);
    EXPECT_FALSE(options.pingInDialog);
    EXPECT_EQ(options.sessionOpensAfter, seconds(0.5));
    EXPECT_EQ(options.scripting.inDialog, DialogAnswer::deferral);
    EXPECT_TRUE(options.scripting.answersInProgress);
    EXPECT_TRUE(options.scripting.statsForPages);
    EXPECT_EQ(options.scripting.version, 4);
    EXPECT_EQ(options.scripting.unknownSession, UnknownSessionError::forbidden);
    EXPECT_TRUE(options.scripting.readyCheckFails);
    EXPECT_TRUE(options.scripting.closedSessionListsNothing);
    EXPECT_EQ(options.scripting.errorTypes, ErrorTypeSpelling::prefixedName);
}

TEST(SimulatorArguments, ReachEachOptionOfTheScriptingService) {
    const auto arguments =
        read({"--scripting-port=0",     "--no-scripting",       "--japanese-names", "--folders=2",
              "--attributes=numbers",   "--error-types=name",   "--camel-case",     "--empty-list-as-object",
              "--armed-monitors",       "--page-limit=500",     "--miscount=-2",    "--keep-registrations",
              "--command-ms=20",        "--ready-after-ms=500", "--busy-one-in=9",  "--busy-burst=4",
              "--busy-error=not-ready", "--stall-one-in=8",     "--stall-ms=2500",  "--reset-one-in=11",
              "--go-away-one-in=12",    "--die-one-in=13",      "--down-ms=750",    "--bytes-at-once=1",
              "--faulty-wire"});
    ASSERT_TRUE(arguments) << arguments.error().error;
    EXPECT_EQ(arguments->scriptingPort, 0);
    EXPECT_FALSE(arguments->scripting);
    EXPECT_TRUE(arguments->style.japaneseNames);
    EXPECT_EQ(arguments->style.folders, 2);
    const ScriptingOptions& options = arguments->options.scripting;
    EXPECT_EQ(options.attributes, AttributeSpelling::numbers);
    EXPECT_EQ(options.errorTypes, ErrorTypeSpelling::name);
    EXPECT_TRUE(options.camelCase);
    EXPECT_TRUE(options.emptyListAsObject);
    EXPECT_TRUE(options.armedMonitors);
    EXPECT_EQ(options.pageLimit, 500u);
    EXPECT_EQ(options.miscount, -2);
    EXPECT_TRUE(options.registrationOutlivesConnection);
    EXPECT_EQ(options.commandTime, seconds(0.02));
    EXPECT_EQ(options.readyAfter, seconds(0.5));
    EXPECT_EQ(options.busyOneIn, 9);
    EXPECT_EQ(options.busyBurst, 4);
    EXPECT_EQ(options.busyError, BusyError::hostNotReady);
    EXPECT_EQ(options.stallOneIn, 8);
    EXPECT_EQ(options.stallTime, seconds(2.5));
    EXPECT_EQ(options.resetOneIn, 11);
    EXPECT_EQ(options.goAwayOneIn, 12);
    EXPECT_EQ(options.dieOneIn, 13);
    EXPECT_EQ(options.downTime, seconds(0.75));
    EXPECT_EQ(options.bytesAtOnce, 1u);
    EXPECT_TRUE(options.faultyWire);
}

TEST(SimulatorArguments, AreRefusedWithStatusTwoWhenTheyAreNotUnderstood) {
    for (const auto& words : std::vector<std::vector<const char*>>{{"--fast"},
                                                                   {"play"},
                                                                   {"--tracks"},
                                                                   {"--tracks", "many"},
                                                                   {"--tracks", "1001"},
                                                                   {"--surfaces", "3"},
                                                                   {"--latency-ms", "-1"},
                                                                   {"--fader-bits", "12"},
                                                                   {"--end-of-session", "open"},
                                                                   {"--dump-order", "ping,faders"},
                                                                   {"--dump-order", "ping,sound"},
                                                                   {"--scripting-port", "65536"},
                                                                   {"--attributes", "colors"},
                                                                   {"--page-limit", "0"}}) {
        const auto arguments = read(words);
        ASSERT_FALSE(arguments) << words.front();
        EXPECT_EQ(arguments.error().status, 2) << words.front();
        EXPECT_FALSE(arguments.error().error.empty()) << words.front();
        EXPECT_TRUE(arguments.error().output.empty()) << words.front();
    }
}

TEST(SimulatorArguments, AnswerHelpAndVersion) {
    const auto help = read({"--help"});
    ASSERT_FALSE(help);
    EXPECT_EQ(help.error().status, 0);
    EXPECT_THAT(help.error().output, HasSubstr("--end-of-session blank|fill"));
    EXPECT_THAT(help.error().output, HasSubstr("rename TRACK NAME"));
    EXPECT_TRUE(help.error().error.empty());

    const auto version = read({"--version"});
    ASSERT_FALSE(version);
    EXPECT_EQ(version.error().status, 0);
    EXPECT_EQ(version.error().output, "lumbrine-simulator " LUMBRINE_VERSION "\n");
}

} // namespace
} // namespace lumbrine
