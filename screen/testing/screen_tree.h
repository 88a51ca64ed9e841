// Trees of elements as text, for tests:
//
//     # what the screen shows
//     application com.avid.ProTools 501 &app
//       AXMenuBar=
//         AXMenuBar
//       AXWindows:
//         AXWindow AXTitle="Edit: Song"
//           AXTable &tracks AXDescription="Track List"
//             AXRow AXSelected=true AXParent=@tracks
//
// Two more spaces of indentation mean one level down. A line is an element: its role (- for none) and its attributes.
// The lines below it are its "AXChildren"; without any, the element has no such attribute. A line "NAME:" below an
// element starts the list that is its attribute NAME, and "NAME=" starts the single element that is its attribute NAME.
//
// A value is "text" (with \" \\ \n \t), true, false, @label, [@label @label], or ? for a value of another kind. &label
// names an element, for references in the tree and for the test. Lines that begin with # are comments.
#pragma once

#include "platform/virtual/memory_screen.h"

#include <expected>
#include <functional>

namespace lumbrine {

using ElementLabels = std::map<std::string, MemoryScreen::Element, std::less<>>;

// Adds the tree to the screen. Returns the labelled elements, or the error and its line.
std::expected<ElementLabels, std::string> showTree(MemoryScreen& screen, std::string_view text);

} // namespace lumbrine
