// The whole session as a list on the page, a line for each track.
#pragma once

#include "remote/canvas.h"
#include "remote/session_picture.h"
#include "remote/track_facts.h"
#include "remote/view_state.h"

#include <string>

namespace lumbrine::remote {

inline constexpr int minSessionColumns = 60;

// A heading and below it the tracks from `list.first` on, in those rows of the page, which is at least
// `minSessionColumns` wide. From left to right: cursor and mark, the strip that shows the track, its number, name on
// its colour, fader, lights, select, automation mode, pan, comment as far as there is room. What no message has told of
// is blank or a dot.
void drawSession(Canvas& canvas, int top, int height, const SessionPicture& picture, Offset offset,
                 const SessionList& list, bool blinkOn);

// How many tracks fit into that height.
int tracksIn(int height);

// The track under the cursor with what has no room on its line, and how many are marked.
std::string trackInWords(const SessionPicture& picture, Offset offset, const SessionList& list);

} // namespace lumbrine::remote
