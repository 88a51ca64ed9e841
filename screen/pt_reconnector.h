// Makes Pro Tools apply its Peripherals settings. When it does, it opens the MIDI ports again.
#pragma once

#include "base/bilingual.h"
#include "platform/api/accessibility.h"
#include "platform/api/runtime.h"

namespace lumbrine {

// Stateless. Opens Setup ▸ Peripherals in Pro Tools' menu bar, selects the tab with the MIDI controllers and presses
// OK. It changes no setting. It works with Pro Tools in English and in Japanese.
struct PTReconnector {
    // Returns the outcome as a line for the log. Never call it on the main thread. It blocks for 0.4 s after each alert
    // about HUI that it answers, 0.2 s after each of up to 25 looks for the dialog, and 0.6 s after selecting the tab:
    // about a second as a rule, and at most 25.4 s with `alertLimit` alerts. It does not check the user's permission:
    // without it nothing is found on the screen, and the line says what was not found.
    static std::string run(Accessibility& accessibility, Runtime& runtime, const Bilingual& text);

    // The most alerts that one run answers. An alert that stays is answered again, in up to five passes over the
    // windows. Pro Tools shows one or two; the limit is for a screen that keeps showing more.
    static constexpr int alertLimit = 50;
};

} // namespace lumbrine
