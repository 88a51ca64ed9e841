// One element of the simulated screen. Its value identifies it, and stays the same as long as the thing it shows
// exists.
#pragma once

#include <string>
#include <variant>
#include <vector>

namespace lumbrine {

struct ScreenElement {
    enum class Kind {
        application,

        menuBar,
        menuBarItem, // number: of the menu, as in screen_texts.h
        menu,
        menuItem, // part: which of the menu's

        editWindow,
        trackList,
        trackRow,  // number: the track's id, here and below
        trackCell, // part: 0 the name, 1 the colour
        trackName,
        listColumn, // part: which

        mixWindow,
        mixer, // holds the strips
        strip,
        stripPart, // part: which of the strip's

        peripherals, // number: which time it has been open, here and below
        tabs,
        tab,          // part: which
        dialogButton, // part: as in screen_texts.h

        alert,     // number: which of all alerts, here and below
        alertText, // part: which line
        alertButton,

        furniture, // number: in which window; part: which room of it, each holds 100
        furnishing // part: which of its room
    };

    Kind kind = Kind::application;
    int number = 0;
    int part = 0;

    bool operator==(const ScreenElement&) const = default;
};

using ScreenValue = std::variant<ScreenElement, std::vector<ScreenElement>, std::string, bool>;

} // namespace lumbrine
