// The contents of the window and of the status menu as plain values: every row, text, symbol, state and action, in the
// user's language, computed from the model's published state. All shells draw exactly these values.
#pragma once

#include "base/bilingual.h"
#include "model/state/published_state.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

// The user's actions. A shell passes them to ReceiverApp::perform.
enum class ScreenAction {
    none,
    reconnect,
    channelBack,
    bankBack,
    channelForward,
    bankForward,
    testSweep,
    showWindow,
    launchAtLogin, // toggles
    about,
    connectPhone,
    session,
    onlyProblems, // toggles what the log shows
    quit,
};

enum class Symbol {
    sliders,
    warning,
    reconnect,
    network,
    bankBack,
    channelBack,
    channelForward,
    bankForward,
    play,
    about,
    code,
    list,
};

// The name of the symbol in Apple's SF Symbols: "slider.vertical.3".
std::string_view symbolName(Symbol symbol);

struct TextRun {
    std::string text;
    bool bold = false;
};

struct StatusItem {
    bool ok; // drawn as a light
    std::string title;
    std::string detail;
};

struct ScreenNotice {
    bool shown;
    Symbol symbol;
    std::vector<TextRun> text; // one paragraph, which the shell wraps
};

struct ScreenButton {
    Symbol symbol;
    std::string title; // empty when the button has only the symbol
    std::string help;  // tooltip, and the name of a button without title for screen readers; may be empty
    ScreenAction action;
};

struct ScreenToggle {
    std::string title;
    ScreenAction action;
    bool on;
};

struct AddressLine {
    Symbol symbol;
    std::string title;
    std::string address; // the user can select and copy it
};

// One channel strip as the surface shows it.
struct StripView {
    std::string name;     // at most four characters, trimmed
    std::string fullName; // of the track in the session; empty while unknown
    std::optional<RGBColor> color;
    double fader = 0; // 0.0-1.0
    bool mute = false;
    bool impliedMute = false; // another track's solo mutes it; never together with `mute`
    bool solo = false;
    bool select = false;
    std::string spoken;       // for tooltips: "1 Kick, 72 %, muted"
    std::string spokenName;   // for screen readers, like the next two: "1 Kick"
    std::string spokenValue;  // "72 %, muted"
    std::string spokenLights; // "muted", for readers that say the fader's value by themselves

    double percent() const; // of the fader's way, without decimals

    const std::string& shownName() const { return fullName.empty() ? name : fullName; }

    bool operator==(const StripView&) const = default;
};

// The main window, from top to bottom. The lines of the log are PublishedState::logLines.
struct ReceiverView {
    std::string windowTitle;
    std::string heading;
    StatusItem proTools;
    StatusItem client;
    ScreenNotice notice;
    ScreenButton reconnect;
    AddressLine address;
    ScreenButton connectPhone;         // beside the address
    std::array<ScreenButton, 4> moves; // bank back, channel back, channel forward, bank forward
    ScreenButton test;
    ScreenButton session; // in the line of the heading, like the next
    ScreenButton about;
    std::string position;   // "Tracks 17-32 of 64"; empty while it is unknown
    std::string stripsName; // for screen readers
    std::vector<StripView> strips;
    std::string logHeading;
    ScreenToggle onlyProblems; // beside the heading of the log
};

inline constexpr std::string_view windowIdentifier = "main";
inline constexpr int minimumWindowWidth = 400;
inline constexpr int minimumWindowHeight = 400;

ReceiverView receiverView(const PublishedState& published, const Bilingual& text, TimePoint now);

struct MenuItem {
    enum class Kind { status, command, toggle, divider };

    Kind kind;
    std::string title = {};
    ScreenAction action = ScreenAction::none;
    bool enabled = true; // status lines do nothing; as disabled ones they would be too pale to read
    bool on = false;     // of toggles

    bool operator==(const MenuItem&) const = default;
};

// The status icon and its menu.
struct StatusMenu {
    Symbol symbol;
    double opacity;
    std::string spoken; // for screen readers and as tooltip of the icon
    std::vector<MenuItem> items;

    bool operator==(const StatusMenu&) const = default;
};

// `loginOn` is the state of the toggle for launch at login.
StatusMenu statusMenu(const PublishedState& published, bool loginOn, const Bilingual& text);

} // namespace lumbrine
