#include "tools/blackbox/command_words.h"

#include "client_link/client_command.h"
#include "remote/message_line.h"
#include "remote/receiver_message.h"
#include "seal/seal_trailer.h"
#include "seal/session_key.h"

#include <array>
#include <cstdio>

namespace lumbrine::blackbox {

namespace {

constexpr std::array<const char*, 6> modeKeys{"trim", "latch", "read", "off", "write", "touch"};
constexpr std::array<const char*, 4> moves{"channel left", "bank left", "channel right", "bank right"};
constexpr std::uint8_t takeOver = 0x25;

std::string decimal(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.4f", value);
    return text.data();
}

std::string modeOf(int port) {
    return port >= 0 && port < static_cast<int>(modeKeys.size()) ? modeKeys[static_cast<std::size_t>(port)]
                                                                 : "mode-" + std::to_string(port);
}

std::string listOf(const std::vector<int>& members) {
    std::string text;
    for (const int member : members)
        text += " " + std::to_string(member + 1);
    return text;
}

struct CommandTeller {
    template <typename OfStrip>
    DatagramWords strip(const char* word, const OfStrip& command, const std::string& more = {}) const {
        return {std::string(word) + " " + std::to_string(command.strip + 1) + more, command.strip};
    }

    DatagramWords operator()(const Hello&) const { return {"hello"}; }
    DatagramWords operator()(const FaderMove& c) const { return strip("fader", c, " " + decimal(c.value.unit())); }
    DatagramWords operator()(const FaderTouch& c) const { return strip("touch", c); }
    DatagramWords operator()(const FaderRelease& c) const { return strip("release", c); }
    DatagramWords operator()(const MutePress& c) const { return strip("mute", c); }
    DatagramWords operator()(const SoloPress& c) const { return strip("solo", c); }
    DatagramWords operator()(const RecArmPress& c) const { return strip("rec", c); }
    DatagramWords operator()(const SelectPress& c) const { return strip("select", c); }
    DatagramWords operator()(const VpotDelta& c) const { return strip("vpot", c, " " + std::to_string(c.delta)); }
    DatagramWords operator()(const PanModeToggle&) const { return {"pan-mode"}; }
    DatagramWords operator()(const PanSeek& c) const { return strip("pan-seek", c, " " + std::to_string(c.target)); }
    DatagramWords operator()(const BankMove& c) const {
        return {c.kind < moves.size() ? moves[c.kind] : "move-" + std::to_string(c.kind)};
    }
    DatagramWords operator()(const SeekBank& c) const { return {"seek " + std::to_string(c.target + 1)}; }
    DatagramWords operator()(const Recalibrate&) const { return {"recalibrate"}; }
    DatagramWords operator()(const InputMonitorToggle& c) const { return strip("monitor", c); }
    DatagramWords operator()(const SetAutoMode& c) const { return strip("auto-mode", c, " " + modeOf(c.mode)); }
    DatagramWords operator()(const GroupAutoMode& c) const {
        return {"group-auto-mode " + modeOf(c.huiPort) + listOf(c.members)};
    }
    DatagramWords operator()(const GroupMute& c) const {
        return {std::string("group-mute ") + (c.enabled ? "on" : "off") + listOf(c.members)};
    }
    DatagramWords operator()(const GroupSolo& c) const {
        return {std::string("group-solo ") + (c.enabled ? "on" : "off") + listOf(c.members)};
    }
    DatagramWords operator()(const GroupFaders& c) const {
        std::string text = "group-faders";
        for (const auto& [member, value] : c.entries)
            text += " " + std::to_string(member + 1) + "=" + decimal(value);
        return {text};
    }
    DatagramWords operator()(const VisibleRange& c) const {
        return {"visible " + std::to_string(c.start + 1) + " " + std::to_string(c.count)};
    }
};

struct StripOfMessage {
    template <typename Message>
    std::optional<int> operator()(const Message& message) const {
        if constexpr (requires { message.strip.index(); }) {
            return static_cast<int>(message.strip.index());
        } else {
            return std::nullopt;
        }
    }
};

// Behind the words of a sealed message: which one of its session it is, and whose.
std::string sealNote(ByteView datagram) {
    const auto sealed = seal::splitTrailer(datagram);
    if (!sealed) return {};
    return " (sealed, number " + std::to_string(sealed->trailer.sequence.count) + ", key " +
           std::to_string(sealed->trailer.keyNumber) + ")";
}

DatagramWords unknown(ByteView datagram) {
    return {"hex " + hexOf(datagram)};
}

} // namespace

std::string hexOf(ByteView bytes) {
    std::string text;
    std::array<char, 4> digits{};
    for (const std::uint8_t byte : bytes) {
        std::snprintf(digits.data(), digits.size(), "%02x", byte);
        text += (text.empty() ? "" : " ") + std::string(digits.data());
    }
    return text;
}

DatagramWords clientWords(ByteView datagram) {
    const ByteView message = seal::messageOf(datagram);
    if (isClientDatagram(message) && message[1] == takeOver) return {"take-over" + sealNote(datagram)};
    if (seal::clientHalfOf(message)) return {"hello, to open a session" + sealNote(datagram)};
    const auto command = parseClientCommand(message);
    if (!command) return unknown(datagram);
    DatagramWords words = std::visit(CommandTeller{}, *command);
    words.text += sealNote(datagram);
    return words;
}

DatagramWords receiverWords(ByteView datagram) {
    if (seal::halvesOf(seal::messageOf(datagram))) return {"session" + sealNote(datagram)};
    const auto message = remote::parseReceiverMessage(seal::messageOf(datagram));
    if (!message) return unknown(datagram);
    return {remote::lineOf(*message) + sealNote(datagram), std::visit(StripOfMessage{}, *message)};
}

} // namespace lumbrine::blackbox
