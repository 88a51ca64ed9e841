// What the program says about itself: to its user, and in a report for those who help.
#pragma once

#include "app/diagnosis.h"

#include <string>
#include <vector>

namespace lumbrine {

struct AboutFacts {
    std::string version;
    std::string systemName;
    std::vector<Check> checks;
    std::string log;       // with times
    bool recorded = false; // there is a recording to save
};

struct AboutText {
    std::string title;      // of the box, and of what opens it
    std::string heading;    // "Lumbrine 0.1.0"
    std::string body;       // the checks
    std::string copyButton; // puts `report` on the clipboard
    std::string saveButton; // writes a file for those who help, as AboutFacts::recorded allows; empty for no button
    std::string notSaved;   // what stands before the reason
    std::string closeButton;
    std::string report;
};

AboutText aboutText(const AboutFacts& facts, const Bilingual& text);

} // namespace lumbrine
