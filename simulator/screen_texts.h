// The texts on the simulated screen in both languages.
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

// The menus from left to right. The first is the Apple menu.
std::span<const ScreenMenu> screenMenus();

inline constexpr int setupMenu = 5;
inline constexpr int peripheralsItem = 2; // in the Setup menu

// The tabs of the Peripherals dialog.
std::span<const ScreenText> peripheralsTabs();
inline constexpr int midiControllersTab = 2;
inline constexpr int synchronizationTab = 0; // selected when the dialog opens

inline constexpr std::array dialogButtons{ScreenText{"Cancel", "キャンセル"}, ScreenText{"OK", "OK"}};
inline constexpr int cancelButton = 0;
inline constexpr int okButton = 1;

inline constexpr ScreenText peripheralsTitle{"Peripherals", "ペリフェラル"};
inline constexpr ScreenText editTitle{"Edit: ", "編集: "};   // the session's name follows
inline constexpr ScreenText mixTitle{"Mix: ", "ミックス: "}; // the session's name follows

} // namespace lumbrine
