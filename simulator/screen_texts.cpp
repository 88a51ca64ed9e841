#include "simulator/screen_texts.h"

namespace lumbrine {

namespace {

constexpr std::array systemItems{ScreenText{"About This Mac", "このMacについて"},
                                 ScreenText{"System Settings...", "システム設定..."}};
constexpr std::array programItems{ScreenText{"About Pro Tools", "Pro Toolsについて"},
                                  ScreenText{"Quit Pro Tools", "Pro Toolsを終了"}};
constexpr std::array fileItems{ScreenText{"Open Session...", "セッションを開く..."}, ScreenText{"Save", "保存"},
                               ScreenText{"Close Session", "セッションを閉じる"}};
constexpr std::array editItems{ScreenText{"Undo", "取り消し"}, ScreenText{"Redo", "やり直し"}};
constexpr std::array trackItems{ScreenText{"New...", "新規..."}, ScreenText{"Duplicate...", "複製..."}};
constexpr std::array setupItems{ScreenText{"Hardware...", "ハードウェア..."},
                                ScreenText{"Playback Engine...", "プレイバックエンジン..."},
                                ScreenText{"Peripherals...", "ペリフェラル..."}, ScreenText{"I/O...", "I/O..."},
                                ScreenText{"Preferences...", "初期設定..."}};
constexpr std::array windowItems{ScreenText{"Mix", "ミックス"}, ScreenText{"Edit", "編集"}};

constexpr std::array menus{
    ScreenMenu{{"Apple", "Apple"}, systemItems},      ScreenMenu{{"Pro Tools", "Pro Tools"}, programItems},
    ScreenMenu{{"File", "ファイル"}, fileItems},      ScreenMenu{{"Edit", "編集"}, editItems},
    ScreenMenu{{"Track", "トラック"}, trackItems},    ScreenMenu{{"Setup", "設定"}, setupItems},
    ScreenMenu{{"Window", "ウィンドウ"}, windowItems}};

constexpr std::array tabs{
    ScreenText{"Synchronization", "シンクロナイゼーション"}, ScreenText{"Machine Control", "マシンコントロール"},
    ScreenText{"MIDI Controllers", "MIDIコントローラー"}, ScreenText{"Ethernet Controllers", "Ethernetコントローラー"},
    ScreenText{"Mic Preamps", "マイクプリアンプ"}};

} // namespace

std::span<const ScreenMenu> screenMenus() {
    return menus;
}

std::span<const ScreenText> peripheralsTabs() {
    return tabs;
}

} // namespace lumbrine
