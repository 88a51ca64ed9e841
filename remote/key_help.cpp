#include "remote/key_help.h"

#include <array>

namespace lumbrine::remote {
namespace {

constexpr std::array strips{
    KeyHelp{"← →  1-9 0  Tab", "another strip; Tab: the same one on the other surface"},
    KeyHelp{"↑ ↓", "fader by 2 of 100"},
    KeyHelp{"+ -", "fader by 0.2"},
    KeyHelp{"Page up, page down", "fader by 10"},
    KeyHelp{"m  s  r  i", "mute, solo, record arm, input monitoring"},
    KeyHelp{"Enter", "select the track"},
    KeyHelp{",  .  c", "pan to the left, to the right, to the centre"},
    KeyHelp{"P", "pan to a position"},
    KeyHelp{"p", "turn the other side of stereo pans"},
    KeyHelp{"a", "automation mode"},
    KeyHelp{"[  ]  {  }", "the surfaces by a bank or a track, left or right"},
    KeyHelp{"g", "go to a track by its number"},
    KeyHelp{"v", "the whole session"},
    KeyHelp{"R", "build the track map anew"},
    KeyHelp{"T", "take over control"},
    KeyHelp{"Ctrl-L", "ask for everything and draw anew"},
    KeyHelp{"q  Ctrl-C", "quit"},
};

constexpr std::array session{
    KeyHelp{"↑ ↓", "another track"},
    KeyHelp{"Page up, page down", "a page up, a page down"},
    KeyHelp{"Home, End", "the first track, the last one"},
    KeyHelp{"Enter", "bring the track to the first strip"},
    KeyHelp{"g", "go to a track by its number"},
    KeyHelp{"[  ]  {  }", "the surfaces by a bank or a track, left or right"},
    KeyHelp{"Space  u", "mark or unmark the track; unmark all"},
    KeyHelp{"f", "faders of the marked tracks, or of this one"},
    KeyHelp{"a", "automation mode of the marked tracks, or of this one"},
    KeyHelp{"m  s", "mute, solo the marked tracks, or this one; again: undo"},
    KeyHelp{"c", "read the modes and pans of the tracks on the page"},
    KeyHelp{"v", "the strips"},
    KeyHelp{"R", "build the track map anew"},
    KeyHelp{"T", "take over control"},
    KeyHelp{"Ctrl-L", "ask for everything and draw anew"},
    KeyHelp{"q  Ctrl-C", "quit"},
};

} // namespace

std::span<const KeyHelp> keysOf(Page page) {
    return page == Page::strips ? std::span<const KeyHelp>(strips) : std::span<const KeyHelp>(session);
}

} // namespace lumbrine::remote
