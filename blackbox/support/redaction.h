// A recording without what it tells of the people and their work, for giving it away.
#pragma once

#include "base/bytes.h"

namespace lumbrine::blackbox {

// A recording of the same length with the same records at the same places:
// - names of tracks and of the computer become pseudonyms of the same length and kind, the same everywhere: in
//   datagrams, on displays, in announcements and in log lines;
// - comments become blanks, and seals zeros;
// - addresses of peers become others, the same for the same peer; in log lines their digits become 0;
// - what passed on the connection to the scripting service becomes zeros, and the values on the screen become "x".
// A log line keeps a name that nothing else in the recording shows. `ring` is a whole recording.
Bytes redacted(ByteView ring);

} // namespace lumbrine::blackbox
