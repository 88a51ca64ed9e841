// Lays out the whole page of the terminal view. A pure function: the same picture, view and size give the same page.
#pragma once

#include "remote/canvas.h"
#include "remote/session_picture.h"
#include "remote/view_state.h"

namespace lumbrine::remote {

inline constexpr int minRows = 21;

// From top to bottom: the title with transport and bank position, the state of the link, the strips or the list of
// tracks, a description of the strip or track under the cursor, and the keys or the prompt. With `view.help` set, the
// list of keys instead. When the page is too small, only a line that says so.
Canvas screenOf(const SessionPicture& picture, const ViewState& view, int rows, int columns);

// The number of session tracks that a page with this many rows shows.
int tracksOnPage(int rows);

} // namespace lumbrine::remote
