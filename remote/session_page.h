// The session as a list with a line for each track.
#pragma once

#include "remote/canvas.h"
#include "remote/session_picture.h"
#include "remote/track_facts.h"
#include "remote/view_state.h"

#include <string>

namespace lumbrine::remote {

inline constexpr int minSessionColumns = 60;

// Draws a heading and below it the tracks from `view.session.first` on, in `height` rows from `top`. The page must be
// at least `minSessionColumns` wide. From left to right: cursor and mark, the strip that shows the track, the track's
// number, the name on its colour, fader, lights, select, automation mode, pan, and as much of the comment as fits.
// Unknown values are blank or a dot.
void drawSession(Canvas& canvas, int top, int height, const SessionPicture& picture, const ViewState& view);

// The number of tracks that fit this height.
int tracksIn(int height);

// Describes the track under the cursor, including what does not fit its line, and the number of marked tracks.
std::string trackInWords(const SessionPicture& picture, Offset offset, const SessionList& list, const Bilingual& text);

} // namespace lumbrine::remote
