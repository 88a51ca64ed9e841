// The whole page of the terminal view. Pure: the same picture, view and size give the same page.
#pragma once

#include "remote/canvas.h"
#include "remote/session_picture.h"
#include "remote/view_state.h"

namespace lumbrine::remote {

inline constexpr int minRows = 21;

// Title with transport and bank position, the link in words, the strips or the tracks of the session, what is under the
// cursor in words, keys or prompt. Or the list of keys; or, on a page that is too small, a line that says so.
Canvas screenOf(const SessionPicture& picture, const ViewState& view, int rows, int columns);

// How many tracks of the session a page of so many rows shows.
int tracksOnPage(int rows);

} // namespace lumbrine::remote
