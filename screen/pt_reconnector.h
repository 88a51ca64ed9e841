// Makes Pro Tools apply its Peripherals settings. When it does, it opens the MIDI ports again.
#pragma once

#include "base/bilingual.h"
#include "platform/api/accessibility.h"
#include "platform/api/runtime.h"

namespace lumbrine {

// Stateless. Opens Setup ▸ Peripherals in Pro Tools' menu bar, selects the tab with the MIDI controllers and presses
// OK. It changes no setting. It works with Pro Tools in English and in Japanese.
struct PTReconnector {
    struct Outcome {
        std::string line;     // for the log
        bool refused = false; // the system says that reading the screen is allowed, and refuses it
    };

    // Never call it on the main thread. It blocks for 0.4 s after each alert about HUI that it answers, 0.2 s after
    // each look for the dialog, 0.6 s after selecting the tab, and for as long as Pro Tools takes to answer: about a
    // second as a rule, and never longer than `longest`. When two messages in a row go unanswered, it gives up. Pro
    // Tools may be too busy to answer while it opens the dialog, so the looks for it go on for 5 s all the same. It
    // does not check the user's permission: without it nothing is found on the screen, and the line says what was not
    // found.
    static Outcome run(Accessibility& accessibility, Runtime& runtime, const Bilingual& text);

    // The most alerts that one run answers. An alert that stays is answered again, in up to five passes over the
    // windows. Pro Tools shows one or two; the limit is for a screen that keeps showing more.
    static constexpr int alertLimit = 50;

    // The screen is read until then. The last message and the last press may take `Accessibility::answerTime` each
    // beyond it, and what follows the press 0.6 s.
    static constexpr Duration readingLimit = seconds(30);
    static constexpr Duration longest = readingLimit + 2 * Accessibility::answerTime + seconds(0.6);
};

} // namespace lumbrine
