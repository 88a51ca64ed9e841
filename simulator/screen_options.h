// Options for the screen of the simulated Pro Tools: how its windows look, and faults.
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
    // ---- Appearance.
    bool japanese = false;                    // language of menus, windows and buttons; false: English
    NameNumbers numbers = NameNumbers::none;  // before the names in the track list
    bool hiddenTracksListed = false;          // in the track list; a setting in the real Pro Tools
    int mixStrips = 1000;                     // the number of strips that fit the Mix window
    int furniture = 0;                        // meaningless elements in each window
    Duration dialogOpensAfter = seconds(0.3); // from the press of the menu item

    // ---- Faults.
    bool trusted = true;  // the user allows other programs to read and press elements
    bool menuItem = true; // Peripherals is in the Setup menu
    bool midiTab = true;  // the dialog has the tab for MIDI controllers
    bool okButton = true; // the dialog has an OK button
    bool dialogOpens = true;
    int failOneIn = 0;   // about one read and one press in N fail; 0 for none
    int vanishOneIn = 0; // about one element in N disappears before it is read; 0 for none
};

// A description of what is wrong with the options; absent when they are valid.
std::optional<std::string> problemWith(const ScreenOptions& options);

} // namespace lumbrine
