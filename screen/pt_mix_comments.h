// Reads the comments in the channel strips of Pro Tools' Mix window.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/api/runtime.h"
#include "screen/no_reading.h"

#include <expected>
#include <map>

namespace lumbrine {

// Stateless: any thread except the main thread, also several at once. Asks Pro Tools once about every element of the
// Mix window down to depth 12, except elements below the children of a recognised strip.
struct PTMixComments {
    // How long a read may take. Comments that it has not come to by then are absent.
    static constexpr Duration timeLimit = seconds(10);

    // Returns the comment, which may be empty, for each track whose strip is in the window and can be told for sure. A
    // strip is an element with two kinds of children: a pop-up button whose value is one of `knownNames`, and a text
    // field, of which the first is the comment. Names are compared in composed form (base/composed_text.h).
    //
    // A strip whose pop-ups show two known names has no comment: one of them is an output or a send. A strip of which
    // some message went unanswered has none either. When two strips have the same name, the later one counts.
    //
    // Nothing is shown when `knownNames` is empty (then Pro Tools is not asked), when the user has not given
    // permission, when Pro Tools or its Mix window is not there, and when no comment can be told.
    static std::expected<std::map<std::string, std::string>, NoReading>
    read(Accessibility& accessibility, Runtime& runtime, const std::vector<std::string>& knownNames);
};

} // namespace lumbrine
