// What can be chosen about the screen of the simulated Pro Tools: how its windows look, and faults.
#pragma once

#include "platform/api/time.h"

#include <optional>
#include <string>

namespace lumbrine {

enum class NameNumbers {
    none,
    fullStop,    // "12. Vocals"
    ideographic, // "12。 Vocals"
};

struct ScreenOptions {
    // ---- How it looks.
    bool japanese = false;                    // menus, windows and buttons; else English
    NameNumbers numbers = NameNumbers::none;  // before the names of the track list
    bool hiddenTracksListed = false;          // in the track list, that is; what the real one does is a setting
    int mixStrips = 1000;                     // that the Mix window has room for
    int furniture = 0;                        // elements that mean nothing, in each window
    Duration dialogOpensAfter = seconds(0.3); // from the press of the menu item

    // ---- Faults.
    bool trusted = true;  // the user lets other programs read and press what is shown
    bool menuItem = true; // Peripherals is in the Setup menu
    bool midiTab = true;  // the dialog has the tab for MIDI controllers
    bool okButton = true; // the dialog has an OK button
    bool dialogOpens = true;
    int failOneIn = 0;   // about one read in so many fails, and one press; 0 for none
    int vanishOneIn = 0; // about one element in so many is gone before it is looked at; 0 for none
};

// What is wrong with the options, in words, or nothing.
std::optional<std::string> problemWith(const ScreenOptions& options);

} // namespace lumbrine
