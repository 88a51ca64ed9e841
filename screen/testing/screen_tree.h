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
// Each step of two spaces leads one level down. A line is an element: its role, or - for none, and its attributes. The
// elements below it are its "AXChildren"; those below "NAME:" are the list, and the one below "NAME=" is the element,
// that the line above has as attribute NAME. Without a line below, an element has no "AXChildren" at all.
//
// A value is "text" (with \" \\ \n \t), true, false, @label, [@label @label] or ? for a value of another kind.
// A &label names an element, for these and for the test. What begins with # is skipped.
#pragma once

#include "platform/virtual/memory_screen.h"

#include <expected>
#include <functional>

namespace lumbrine {

using ElementLabels = std::map<std::string, MemoryScreen::Element, std::less<>>;

// Adds the tree to the screen; gives the labels, or says what is wrong in which line.
std::expected<ElementLabels, std::string> showTree(MemoryScreen& screen, std::string_view text);

} // namespace lumbrine
