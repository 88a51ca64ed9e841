#include "remote/message_line.h"

#include "remote/terminal_text.h"

#include <cstdio>

namespace lumbrine::remote {
namespace {

std::string numberOf(Strip strip) {
    return std::to_string(strip.index() + 1);
}

std::string textOf(FaderValue value) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%.4f", value.unit());
    return text.data();
}

std::string textOf(const std::optional<FaderValue>& value) {
    return value ? textOf(*value) : "unknown";
}

std::string textOf(const std::optional<RGBColor>& color) {
    if (!color) return "none";
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", color->red(), color->green(), color->blue());
    return text.data();
}

std::string textOf(bool on) {
    return on ? "on" : "off";
}

std::string textOf(MeterLevels levels) {
    return std::to_string(levels.left) + "/" + std::to_string(levels.right);
}

// A capital letter for a light that is on, a small letter for one that blinks, "-" for one that is off.
char letterOf(Light light, char capital) {
    if (light == Light::off) return '-';
    return light == Light::on ? capital : static_cast<char>(capital - 'A' + 'a');
}

std::string textOf(const StripLights& lights) {
    return {letterOf(lights.mute, 'M'), lights.solo ? 'S' : '-', letterOf(lights.record, 'R')};
}

std::string textOf(PanSide side) {
    return side == PanSide::left ? "left" : "right";
}

std::string textOf(const SessPan& pan) {
    if (!pan.known()) return "unknown";
    return textOf(pan.side) + "/" + std::to_string(pan.ring.position) + (pan.ring.centre ? "/centre" : "");
}

// " 1=.. 2=.." for a list. The first entry has the given number.
template <typename List, typename TextOf>
std::string entriesOf(const List& list, int firstNumber, TextOf textOfEntry) {
    std::string line;
    for (const auto& entry : list)
        line += " " + std::to_string(firstNumber++) + "=" + std::string(textOfEntry(entry));
    return line;
}

// Names on the strips are padded with blanks to four characters, which a line does not need.
std::string withoutBlanksBehind(const std::string& text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

constexpr auto any = [](const auto& entry) { return textOf(entry); };
constexpr auto onOff = [](bool entry) { return textOf(entry); };

struct Teller {
    std::string operator()(const TrackName& message) const {
        return withoutBlanksBehind("name " + numberOf(message.strip) + " " + printable(message.name));
    }
    std::string operator()(const Meters& message) const { return "meters" + entriesOf(message.strips, 1, any); }
    std::string operator()(const Fader& message) const {
        return "fader " + numberOf(message.strip) + " " + textOf(message.value);
    }
    std::string operator()(const Switches& message) const { return "switches" + entriesOf(message.strips, 1, any); }
    std::string operator()(const Pan& message) const {
        return "pan " + numberOf(message.strip) + " " + textOf(message.side) + " " +
               std::to_string(message.ring.position) + (message.ring.centre ? " centre" : "");
    }
    std::string operator()(const PanMode& message) const {
        return "pan-mode " + textOf(message.right ? PanSide::right : PanSide::left);
    }
    std::string operator()(const BankPos& message) const {
        return "bank first=" + (message.offset ? std::to_string(*message.offset + 1) : "unknown") +
               " tracks=" + std::to_string(message.trackCount) + " strips=" + std::to_string(message.shownStrips);
    }
    std::string operator()(const Selects& message) const { return "selects" + entriesOf(message.strips, 1, onOff); }
    std::string operator()(const FullName& message) const {
        return withoutBlanksBehind("full-name " + numberOf(message.strip) + " " + printable(message.name));
    }
    std::string operator()(const Colors& message) const { return "colors" + entriesOf(message.strips, 1, any); }
    std::string operator()(const InputMons& message) const { return "monitors" + entriesOf(message.strips, 1, onOff); }
    std::string operator()(const TrackRow& message) const {
        return "row " + std::to_string(message.index + 1) + " fader=" + textOf(message.fader) +
               " mute=" + textOf(message.mute) + " solo=" + textOf(message.solo) + " record=" + textOf(message.record) +
               " color=" + textOf(message.color) + " monitor=" + textOf(message.inputMonitor) +
               " select=" + textOf(message.select) + " name=" + printable(message.name) +
               " comment=" + printable(message.comment);
    }
    std::string operator()(const AutoModes& message) const {
        return "automation" + entriesOf(message.strips, 1, autoModeName);
    }
    std::string operator()(const Transport& message) const {
        return "transport play=" + textOf(message.playing) + " record=" + textOf(message.recording);
    }
    std::string operator()(const SessAutoChunk& message) const {
        return "session-automation" + entriesOf(message.modes, message.first + 1, autoModeName);
    }
    std::string operator()(const SessPanChunk& message) const {
        return "session-pan" + entriesOf(message.pans, message.first + 1, any);
    }
    std::string operator()(const Busy&) const { return "busy"; }
    std::string operator()(const Pong&) const { return "pong"; }
};

} // namespace

std::string lineOf(const ReceiverMessage& message) {
    return std::visit(Teller{}, message);
}

std::string lineOf(LinkState state) {
    return "state " + std::string(nameOf(state));
}

std::string_view nameOf(LinkState state) {
    switch (state) {
    case LinkState::searching:
        return "searching";
    case LinkState::connected:
        return "connected";
    case LinkState::busy:
        return "busy";
    case LinkState::takenOver:
        return "taken-over";
    case LinkState::lost:
        return "lost";
    }
    return {};
}

// 1-5 are the modes of a track; 9-12 are the same with trim (8 added).
std::string_view autoModeName(AutoMode mode) {
    switch (mode) {
    case 1:
        return "read";
    case 2:
        return "touch";
    case 3:
        return "latch";
    case 4:
        return "write";
    case 5:
        return "off";
    case 9:
        return "trim+read";
    case 10:
        return "trim+touch";
    case 11:
        return "trim+latch";
    case 12:
        return "trim+write";
    default:
        return "unknown";
    }
}

} // namespace lumbrine::remote
