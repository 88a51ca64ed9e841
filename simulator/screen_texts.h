// What is written on the simulated screen, in both languages.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace lumbrine {

struct ScreenText {
    std::string_view english;
    std::string_view japanese;

    std::string_view in(bool isJapanese) const { return isJapanese ? japanese : english; }
};

struct ScreenMenu {
    ScreenText title;
    std::span<const ScreenText> items;
};

// From left to right; the first is the system's.
std::span<const ScreenMenu> screenMenus();

inline constexpr int setupMenu = 5;
inline constexpr int peripheralsItem = 2; // of the Setup menu

// Of the Peripherals dialog.
std::span<const ScreenText> peripheralsTabs();
inline constexpr int midiControllersTab = 2;
inline constexpr int synchronizationTab = 0; // the one that is open first

inline constexpr std::array dialogButtons{ScreenText{"Cancel", "キャンセル"}, ScreenText{"OK", "OK"}};
inline constexpr int cancelButton = 0;
inline constexpr int okButton = 1;

inline constexpr ScreenText peripheralsTitle{"Peripherals", "ペリフェラル"};
inline constexpr ScreenText editTitle{"Edit: ", "編集: "};   // and the session's name
inline constexpr ScreenText mixTitle{"Mix: ", "ミックス: "}; // likewise

} // namespace lumbrine
