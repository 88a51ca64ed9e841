// What the user can do when the system does not let this program read Pro Tools' windows.
#pragma once

#include "model/state/activity_log.h"

namespace lumbrine {

// For a system that says that reading is allowed and refuses it: after an update it can hold an entry in its list that
// is of the former program. Any thread.
void sayThatTheScreenIsRefused(ActivityLog& log);

} // namespace lumbrine
