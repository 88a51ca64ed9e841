// Having Pro Tools apply its Peripherals settings, which makes it take hold of the MIDI ports anew.
#pragma once

#include "base/bilingual.h"
#include "platform/api/accessibility.h"
#include "platform/api/runtime.h"

namespace lumbrine {

// Stateless. Opens Setup ▸ Peripherals from Pro Tools' menu bar, shows the tab of the MIDI controllers and presses OK;
// no setting is changed. Knows Pro Tools in English and in Japanese.
struct PTReconnector {
    // Returns the line for the log: how it went. Never on the main thread: blocks for 0.4 s for each alert about HUI
    // that it answers, 0.2 s for each look for the dialog, 25 at most, and 0.6 s after choosing the tab; so mostly for
    // a second, and with `alertLimit` for 25.4 s at the very most. The user's permission is not asked about: without it
    // nothing is found on the screen, and the line says what was not found.
    static std::string run(Accessibility& accessibility, Runtime& runtime, const Bilingual& text);

    // Alerts that stay are answered again, in five passes over the windows. Their number comes from another program, so
    // no more than this are answered in one run; Pro Tools shows one or two.
    static constexpr int alertLimit = 50;
};

} // namespace lumbrine
