// The comments in the channel strips of Pro Tools' Mix window.
#pragma once

#include "platform/api/accessibility.h"

#include <map>

namespace lumbrine {

// Stateless: any thread but the main thread, several at once. Asks Pro Tools about every element of the Mix window down
// to a depth of 12, save what is inside recognised strips.
struct PTMixComments {
    // From the name of a track to its comment, which may be empty. A strip is an element that directly holds both a
    // pop-up button that shows one of `knownNames`, exactly, and a text field; a track whose strip the window does not
    // show is absent, and of two strips of one name the later counts. Nothing without known names (then nothing is
    // asked), without the user's permission, without Pro Tools or its Mix window, and when no strip is recognised.
    static std::optional<std::map<std::string, std::string>> read(Accessibility& accessibility,
                                                                  const std::vector<std::string>& knownNames);
};

} // namespace lumbrine
