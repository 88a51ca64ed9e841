// Checks the byte examples of docs/protocol.md against the parser and the builders.
#include "client_link/client_command.h"
#include "client_link/state_messages.h"
#include "client_link/testing/describe_command.h"

#include <array>
#include <fstream>
#include <sstream>
#include <utility>

namespace lumbrine {
namespace {

// The name in the heading of an example and its bytes.
using Example = std::pair<std::string, Bytes>;

// Bytes stand at the beginning of a line; two blanks end them.
void appendBytes(Bytes& bytes, const std::string& line) {
    std::istringstream tokens(line.substr(0, line.find("  ")));
    for (std::string token; tokens >> token;)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(token, nullptr, 16)));
}

// The fenced examples of one direction ("to-receiver", "to-client"), in the page's order.
std::vector<Example> examples(const std::string& direction) {
    std::ifstream document(LUMBRINE_SOURCE_DIR "/docs/protocol.md");
    const std::string fence = "```" + direction + " ";
    std::vector<Example> found;
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
        if (line.starts_with(fence)) {
            found.emplace_back(line.substr(fence.size()), Bytes{});
            inside = true;
        } else if (line == "```") {
            inside = false;
        } else if (inside) {
            appendBytes(found.back().second, line);
        }
    }
    return found;
}

TEST(ProtocolDocument, ShowsEachCommandAsTheReceiverReadsIt) {
    std::vector<std::string> read;
    for (const auto& [name, bytes] : examples("to-receiver")) {
        read.push_back(describe(parseClientCommand(bytes)));
        if (name == "TakeOver") continue; // the server's
        EXPECT_TRUE(read.back().starts_with(name)) << name << " reads as " << read.back();
    }
    const std::vector<std::string> expected{
        "Hello",
        "Hello",
        "FaderMove strip 3 value 16383",
        "FaderTouch strip 11",
        "FaderRelease strip 11",
        "MutePress strip 0",
        "SoloPress strip 0",
        "RecArmPress strip 15",
        "VpotDelta strip 2 delta -1",
        "PanModeToggle",
        "PanSeek strip 5 target 6",
        "BankMove kind 3",
        "SeekBank target 24",
        "Recalibrate",
        "SelectPress strip 4",
        "InputMonitorToggle strip 4",
        "SetAutoMode strip 9 mode 2",
        "GroupAutoMode port 5 members 2 3 256",
        "GroupMute on members 5 256",
        "GroupSolo off members 5",
        "GroupFaders 5=1 256=0",
        "VisibleRange start 300 count 16",
        "nothing", // TakeOver
    };
    EXPECT_EQ(read, expected);
}

TEST(ProtocolDocument, ShowsNoByteTooManyInACommand) {
    for (const auto& [name, bytes] : examples("to-receiver")) {
        if (name == "Hello" || name == "TakeOver") continue;
        const ByteView shorter = ByteView(bytes).first(bytes.size() - 1);
        EXPECT_EQ(describe(parseClientCommand(shorter)), "nothing") << name;
    }
}

Bytes switchesExample() {
    std::array<StripSwitches, 8> strips{};
    strips[0].mute = SwitchLight::on;
    strips[1].solo = SwitchLight::on;
    strips[2] = {.mute = SwitchLight::blinking, .solo = SwitchLight::off, .record = SwitchLight::blinking};
    strips[3].record = SwitchLight::on;
    return switchesMessage(strips);
}

Bytes metersExample() {
    std::array<std::uint8_t, 16> levels{12, 11, 0, 0, 5, 5};
    levels[14] = 1;
    levels[15] = 2;
    return metersMessage(levels);
}

Bytes colorsExample() {
    std::array<std::optional<RGBColor>, 8> colors{};
    colors[0] = 0x336699;
    colors[2] = 0x000000;
    return colorsMessage(colors);
}

Bytes trackRowExample() {
    return trackRowMessage(
        256, {.fader = 1.0, .mute = true, .color = 0x336699, .select = true, .name = "Vocal", .comment = "take 3"});
}

// The last chunk of a session of 130 tracks.
Bytes autoChunkExample() {
    std::vector<std::uint8_t> modes(130, 0);
    modes[128] = 1;
    return sessAutoChunkMessages(modes).back();
}

Bytes panChunkExample() {
    std::vector<SessionPan> pans(130);
    pans[128] = {.known = true, .side = 0, .position = 6, .centre = true};
    return sessPanChunkMessages(pans).back();
}

TEST(ProtocolDocument, ShowsEachMessageAsTheReceiverBuildsIt) {
    const std::vector<Example> expected{
        {"TrackName", trackNameMessage(9, "Bas")},
        {"Meters", metersExample()},
        {"Fader", faderMessage(11, 8192.5 / 16383)},
        {"Switches", switchesExample()},
        {"Pan", panMessage(4, 1, 6, true)},
        {"PanMode", panModeMessage(true)},
        {"BankPos", bankPosMessage(24, 130, 16)},
        {"BankPos", bankPosMessage(-1, 0, 8)},
        {"Selects", selectsMessage(std::array<bool, 8>{false, false, true})},
        {"FullName", fullNameMessage(0, "ピアノ")},
        {"Colors", colorsExample()},
        {"InputMons", inputMonsMessage(std::array<bool, 8>{false, true})},
        {"TrackRow", trackRowExample()},
        {"AutoModes", autoModesMessage(std::array<std::uint8_t, 8>{1, 2, 3, 4, 5, 9, 12, 0})},
        {"Transport", transportMessage(true, false)},
        {"SessAutoChunk", autoChunkExample()},
        {"SessPanChunk", panChunkExample()},
        {"Busy", busyMessage()},
        {"Pong", pongMessage()},
    };
    const std::vector<Example> shown = examples("to-client");
    ASSERT_EQ(shown.size(), expected.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
        EXPECT_EQ(shown[i].first, expected[i].first);
        EXPECT_EQ(shown[i].second, expected[i].second) << shown[i].first;
    }
}

} // namespace
} // namespace lumbrine
