// A client command as a line of text, for tests: "FaderMove strip 3 value 16383".
#pragma once

#include "client_link/client_command.h"

#include <optional>
#include <sstream>
#include <string>

namespace lumbrine {

class CommandDescriber {
public:
    std::string operator()(const Hello&) const { return "Hello"; }
    std::string operator()(const FaderMove& c) const { return strip("FaderMove", c.strip, " value ", c.value.raw()); }
    std::string operator()(const FaderTouch& c) const { return strip("FaderTouch", c.strip); }
    std::string operator()(const FaderRelease& c) const { return strip("FaderRelease", c.strip); }
    std::string operator()(const MutePress& c) const { return strip("MutePress", c.strip); }
    std::string operator()(const SoloPress& c) const { return strip("SoloPress", c.strip); }
    std::string operator()(const RecArmPress& c) const { return strip("RecArmPress", c.strip); }
    std::string operator()(const SelectPress& c) const { return strip("SelectPress", c.strip); }
    std::string operator()(const VpotDelta& c) const { return strip("VpotDelta", c.strip, " delta ", int{c.delta}); }
    std::string operator()(const PanModeToggle&) const { return "PanModeToggle"; }
    std::string operator()(const PanSeek& c) const { return strip("PanSeek", c.strip, " target ", int{c.target}); }
    std::string operator()(const BankMove& c) const { return text("BankMove kind ", int{c.kind}); }
    std::string operator()(const SeekBank& c) const { return text("SeekBank target ", c.target); }
    std::string operator()(const Recalibrate&) const { return "Recalibrate"; }
    std::string operator()(const InputMonitorToggle& c) const { return strip("InputMonitorToggle", c.strip); }
    std::string operator()(const SetAutoMode& c) const { return strip("SetAutoMode", c.strip, " mode ", int{c.mode}); }
    std::string operator()(const GroupAutoMode& c) const {
        return text("GroupAutoMode port ", int{c.huiPort}, list(c.members));
    }
    std::string operator()(const GroupMute& c) const {
        return text("GroupMute ", c.enabled ? "on" : "off", list(c.members));
    }
    std::string operator()(const GroupSolo& c) const {
        return text("GroupSolo ", c.enabled ? "on" : "off", list(c.members));
    }
    std::string operator()(const GroupFaders& c) const {
        std::string line = "GroupFaders";
        for (const auto& [member, value] : c.entries)
            line += text(" ", member, "=", value);
        return line;
    }
    std::string operator()(const VisibleRange& c) const {
        return text("VisibleRange start ", c.start, " count ", int{c.count});
    }

private:
    template <typename... Parts>
    static std::string text(const Parts&... parts) {
        std::ostringstream line;
        (line << ... << parts);
        return line.str();
    }

    template <typename... Parts>
    static std::string strip(const char* name, int index, const Parts&... parts) {
        return text(name, " strip ", index, parts...);
    }

    static std::string list(const std::vector<int>& members) {
        std::string line = " members";
        for (const int member : members)
            line += text(" ", member);
        return line;
    }
};

inline std::string describe(const std::optional<ClientCommand>& command) {
    return command ? std::visit(CommandDescriber{}, *command) : "nothing";
}

} // namespace lumbrine
