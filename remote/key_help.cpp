#include "remote/key_help.h"

#include <array>

namespace lumbrine::remote {
namespace {

constexpr std::array strips{
    KeyHelp{"← →  1-9 0  Tab", "another strip; Tab: the same one on the other surface",
            "ストリップを選ぶ（Tab: もう一方のサーフェスの同じ位置）"},
    KeyHelp{"↑ ↓", "fader by 2 of 100", "フェーダーを 2 動かす（0〜100）"},
    KeyHelp{"+ -", "fader by 0.2", "フェーダーを 0.2 動かす"},
    KeyHelp{"Page up, page down", "fader by 10", "フェーダーを 10 動かす"},
    KeyHelp{"m  s  r  i", "mute, solo, record arm, input monitoring", "ミュート、ソロ、録音待機、インプットモニター"},
    KeyHelp{"Enter", "select the track", "トラックを選択"},
    KeyHelp{",  .  c", "pan to the left, to the right, to the centre", "パンを左へ、右へ、中央へ"},
    KeyHelp{"P", "pan to a position", "パンの位置を指定"},
    KeyHelp{"p", "turn the other side of stereo pans", "ステレオパンの左右を切り替え"},
    KeyHelp{"a", "automation mode", "オートメーションモード"},
    KeyHelp{"[  ]  {  }", "the surfaces by a bank or a track, left or right",
            "サーフェスを 1 バンクまたは 1 トラック左右へ移動"},
    KeyHelp{"g", "go to a track by its number", "番号を指定してトラックへ移動"},
    KeyHelp{"v", "the whole session", "セッション全体を表示"},
    KeyHelp{"R", "build the track map anew", "トラック全体を計測し直す"},
    KeyHelp{"T", "take over control", "操作を引き継ぐ"},
    KeyHelp{"Ctrl-L", "ask for everything and draw anew", "すべて再取得して描き直す"},
    KeyHelp{"q  Ctrl-C", "quit", "終了"},
};

constexpr std::array session{
    KeyHelp{"↑ ↓", "another track", "トラックを選ぶ"},
    KeyHelp{"Page up, page down", "a page up, a page down", "1 ページ上へ、下へ"},
    KeyHelp{"Home, End", "the first track, the last one", "最初のトラック、最後のトラック"},
    KeyHelp{"Enter", "bring the track to the first strip", "トラックを先頭のストリップに表示"},
    KeyHelp{"g", "go to a track by its number", "番号を指定してトラックへ移動"},
    KeyHelp{"[  ]  {  }", "the surfaces by a bank or a track, left or right",
            "サーフェスを 1 バンクまたは 1 トラック左右へ移動"},
    KeyHelp{"Space  u", "mark or unmark the track; unmark all", "トラックに印を付ける・外す、すべて外す"},
    KeyHelp{"f", "faders of the marked tracks, or of this one",
            "印を付けたトラック（なければこのトラック）のフェーダー"},
    KeyHelp{"a", "automation mode of the marked tracks, or of this one", "同じくオートメーションモード"},
    KeyHelp{"m  s", "mute, solo the marked tracks, or this one; again: undo",
            "同じくミュート、ソロ（もう一度押すと解除）"},
    KeyHelp{"c", "read the modes and pans of the tracks on the page", "このページのモードとパンを読み取る"},
    KeyHelp{"v", "the strips", "ストリップを表示"},
    KeyHelp{"R", "build the track map anew", "トラック全体を計測し直す"},
    KeyHelp{"T", "take over control", "操作を引き継ぐ"},
    KeyHelp{"Ctrl-L", "ask for everything and draw anew", "すべて再取得して描き直す"},
    KeyHelp{"q  Ctrl-C", "quit", "終了"},
};

} // namespace

std::span<const KeyHelp> keysOf(Page page) {
    return page == Page::strips ? std::span<const KeyHelp>(strips) : std::span<const KeyHelp>(session);
}

} // namespace lumbrine::remote
