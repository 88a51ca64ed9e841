#include "remote/script_command.h"

#include "base/decimal_number.h"
#include "remote/command_builder.h"
#include "remote/words.h"

#include <array>
#include <charconv>
#include <utility>
#include <vector>

namespace lumbrine::remote {
namespace {

using Words = std::span<const std::string_view>;
using Result = std::optional<Bytes>; // absent when the arguments are wrong

std::optional<Strip> stripOf(std::string_view word) {
    const auto number = wholeNumber(word, 1, stripCount);
    if (!number) return std::nullopt;
    return Strip::of(*number - 1);
}

std::optional<FaderValue> faderOf(std::string_view word) {
    const auto value = decimalNumber(word);
    if (!value || *value < 0 || *value > 1) return std::nullopt;
    return FaderValue::ofUnit(*value);
}

std::optional<Member> memberOf(std::string_view word) {
    const auto number = wholeNumber(word, 1, 65536);
    if (!number) return std::nullopt;
    return static_cast<Member>(*number - 1);
}

std::optional<bool> switchOf(std::string_view word) {
    if (word == "on") return true;
    if (word == "off") return false;
    return std::nullopt;
}

template <typename T, std::size_t size>
std::optional<T> choiceOf(std::string_view word, const std::array<std::pair<std::string_view, T>, size>& choices) {
    for (const auto& [name, value] : choices)
        if (name == word) return value;
    return std::nullopt;
}

std::optional<AutoModeKey> autoModeKeyOf(std::string_view word) {
    static constexpr std::array<std::pair<std::string_view, AutoModeKey>, 6> keys{{{"trim", AutoModeKey::trim},
                                                                                   {"latch", AutoModeKey::latch},
                                                                                   {"read", AutoModeKey::read},
                                                                                   {"off", AutoModeKey::off},
                                                                                   {"write", AutoModeKey::write},
                                                                                   {"touch", AutoModeKey::touch}}};
    return choiceOf(word, keys);
}

std::optional<Move> moveOf(std::string_view unit, std::string_view direction) {
    if (direction != "left" && direction != "right") return std::nullopt;
    const bool right = direction == "right";
    if (unit == "bank") return right ? Move::bankRight : Move::bankLeft;
    return right ? Move::channelRight : Move::channelLeft;
}

std::optional<std::vector<Member>> membersOf(Words words) {
    std::vector<Member> members;
    for (const std::string_view word : words) {
        const auto member = memberOf(word);
        if (!member) return std::nullopt;
        members.push_back(*member);
    }
    if (members.size() > maxMembers) return std::nullopt;
    return members;
}

// A command with a strip as its only argument.
template <Bytes (*build)(Strip)>
Result ofStrip(Words words) {
    const auto strip = words.size() == 2 ? stripOf(words[1]) : std::nullopt;
    if (!strip) return std::nullopt;
    return build(*strip);
}

template <Bytes (*build)()>
Result bare(Words words) {
    if (words.size() != 1) return std::nullopt;
    return build();
}

template <Bytes (*build)(bool, std::span<const Member>)>
Result switchGroup(Words words) {
    const auto enabled = words.size() >= 2 ? switchOf(words[1]) : std::nullopt;
    if (!enabled) return std::nullopt;
    const auto members = membersOf(words.subspan(2));
    if (!members) return std::nullopt;
    return build(*enabled, *members);
}

Result fader(Words words) {
    if (words.size() != 3) return std::nullopt;
    const auto strip = stripOf(words[1]);
    const auto value = faderOf(words[2]);
    if (!strip || !value) return std::nullopt;
    return faderMoveCommand(*strip, *value);
}

Result vpot(Words words) {
    if (words.size() != 3) return std::nullopt;
    const auto strip = stripOf(words[1]);
    const auto clicks = wholeNumber(words[2], -128, 127);
    if (!strip || !clicks) return std::nullopt;
    return vpotDeltaCommand(*strip, static_cast<std::int8_t>(*clicks));
}

Result panSeek(Words words) {
    if (words.size() != 3) return std::nullopt;
    const auto strip = stripOf(words[1]);
    const auto target = wholeNumber(words[2], 0, 255);
    if (!strip || !target) return std::nullopt;
    return panSeekCommand(*strip, static_cast<std::uint8_t>(*target));
}

Result bankMove(Words words) {
    const auto move = words.size() == 2 ? moveOf(words[0], words[1]) : std::nullopt;
    if (!move) return std::nullopt;
    return bankMoveCommand(*move);
}

Result seek(Words words) {
    const auto target = words.size() == 2 ? memberOf(words[1]) : std::nullopt;
    if (!target) return std::nullopt;
    return seekBankCommand(*target);
}

Result autoMode(Words words) {
    if (words.size() != 3) return std::nullopt;
    const auto strip = stripOf(words[1]);
    const auto key = autoModeKeyOf(words[2]);
    if (!strip || !key) return std::nullopt;
    return setAutoModeCommand(*strip, *key);
}

Result groupAutoMode(Words words) {
    const auto key = words.size() >= 2 ? autoModeKeyOf(words[1]) : std::nullopt;
    if (!key) return std::nullopt;
    const auto members = membersOf(words.subspan(2));
    if (!members) return std::nullopt;
    return groupAutoModeCommand(*key, *members);
}

Result groupFaders(Words words) {
    std::vector<std::pair<Member, FaderValue>> entries;
    for (const std::string_view word : words.subspan(1)) {
        const std::size_t equals = std::min(word.find('='), word.size());
        const auto member = memberOf(word.substr(0, equals));
        const auto value = equals < word.size() ? faderOf(word.substr(equals + 1)) : std::nullopt;
        if (!member || !value) return std::nullopt;
        entries.emplace_back(*member, *value);
    }
    if (entries.size() > maxMembers) return std::nullopt;
    return groupFadersCommand(entries);
}

Result visible(Words words) {
    if (words.size() != 3) return std::nullopt;
    const auto start = memberOf(words[1]);
    const auto count = wholeNumber(words[2], 0, 255);
    if (!start || !count) return std::nullopt;
    return visibleRangeCommand(*start, static_cast<std::uint8_t>(*count));
}

Result hex(Words words) {
    Bytes datagram;
    for (const std::string_view word : words.subspan(1)) {
        std::uint8_t byte = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), byte, 16);
        if (error != std::errc{} || end != word.data() + word.size()) return std::nullopt;
        datagram.push_back(byte);
    }
    if (datagram.empty()) return std::nullopt;
    return datagram;
}

struct Command {
    std::string_view name;
    std::string_view arguments;
    std::string_view meaning;
    Result (*build)(Words words); // null for hello, which also needs the token
};

constexpr std::array commands{
    Command{"touch", "STRIP", "take hold of a fader", ofStrip<faderTouchCommand>},
    Command{"fader", "STRIP VALUE", "move a fader, 0 to 1", fader},
    Command{"release", "STRIP", "let go of a fader", ofStrip<faderReleaseCommand>},
    Command{"mute", "STRIP", "press mute", ofStrip<mutePressCommand>},
    Command{"solo", "STRIP", "press solo", ofStrip<soloPressCommand>},
    Command{"rec", "STRIP", "press record arm", ofStrip<recArmPressCommand>},
    Command{"select", "STRIP", "press select", ofStrip<selectPressCommand>},
    Command{"monitor", "STRIP", "toggle input monitoring", ofStrip<inputMonitorToggleCommand>},
    Command{"vpot", "STRIP CLICKS", "turn the V-Pot, clockwise when positive", vpot},
    Command{"pan-mode", "", "turn the V-Pots to the other side of stereo pans", bare<panModeToggleCommand>},
    Command{"pan-seek", "STRIP POSITION", "turn the pan to a ring position, 1 to 11", panSeek},
    Command{"bank", "left|right", "move the surfaces by as many tracks as there are strips", bankMove},
    Command{"channel", "left|right", "move the surfaces by one track", bankMove},
    Command{"seek", "TRACK", "bring a session track to the first strip", seek},
    Command{"recalibrate", "", "build the track map anew", bare<recalibrateCommand>},
    Command{"auto-mode", "STRIP trim|latch|read|off|write|touch", "press an automation mode key for a strip", autoMode},
    Command{"group-auto-mode", "MODE TRACK...", "the same for session tracks", groupAutoMode},
    Command{"group-mute", "on|off TRACK...", "mute session tracks", switchGroup<groupMuteCommand>},
    Command{"group-solo", "on|off TRACK...", "solo session tracks", switchGroup<groupSoloCommand>},
    Command{"group-faders", "TRACK=VALUE...", "move the faders of session tracks", groupFaders},
    Command{"visible", "TRACK COUNT", "ask for automation modes and pans from that track on", visible},
    Command{"hello", "", "ask for everything", nullptr},
    Command{"take-over", "", "become the client in control", bare<takeOverCommand>},
    Command{"hex", "BYTE...", "any datagram", hex},
};

std::string usageOf(const Command& command) {
    return std::string(command.name) + (command.arguments.empty() ? "" : " ") + std::string(command.arguments);
}

} // namespace

std::expected<Bytes, std::string> scriptCommand(std::string_view text, std::optional<std::uint64_t> token) {
    const std::vector<std::string_view> words = wordsOf(text);
    if (words.empty()) return std::unexpected("an empty command");
    for (const Command& command : commands) {
        if (command.name != words.front()) continue;
        if (command.build == nullptr && words.size() == 1) return helloCommand(token);
        const Result datagram = command.build != nullptr ? command.build(words) : std::nullopt;
        if (datagram) return *datagram;
        return std::unexpected("\"" + std::string(text) + "\" is not of the form: " + usageOf(command));
    }
    return std::unexpected("no such command: " + std::string(words.front()));
}

std::string scriptCommandHelp() {
    constexpr std::size_t meaningColumn = 50;
    std::string help;
    for (const Command& command : commands) {
        std::string line = "  " + usageOf(command);
        line.resize(std::max(line.size() + 1, meaningColumn), ' ');
        help += line + std::string(command.meaning) + "\n";
    }
    return help;
}

} // namespace lumbrine::remote
