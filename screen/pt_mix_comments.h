// Reads the comments in the channel strips of Pro Tools' Mix window.
#pragma once

#include "platform/api/accessibility.h"

#include <map>

namespace lumbrine {

// Stateless: any thread except the main thread, also several at once. Asks Pro Tools about every element of the Mix
// window down to depth 12, except elements below the children of a recognised strip.
struct PTMixComments {
    // Returns the comment, which may be empty, for each track whose strip is in the window. A strip is an element with
    // two kinds of children: a pop-up button whose value equals one of `knownNames`, and a text field, of which the
    // first is the comment. When two strips have the same name, the later one counts.
    //
    // Absent when `knownNames` is empty (then Pro Tools is not asked), when the user has not given permission, when Pro
    // Tools or its Mix window is not there, and when no strip is recognised.
    static std::optional<std::map<std::string, std::string>> read(Accessibility& accessibility,
                                                                  const std::vector<std::string>& knownNames);
};

} // namespace lumbrine
