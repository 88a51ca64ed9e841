// Tells in the log that something the client asked for is not carried out; once for a run of the same. Any thread.
#pragma once

#include "model/state/activity_log.h"

#include <string_view>

namespace lumbrine {

enum class DropReason {
    surfacesBusy,    // a seek, scan or walk took too long
    faderHeld,       // a walk or scan would have moved the track away from under a finger
    trackGone,       // the surfaces do not show the track any more
    otherTracks,     // the session has none of the tracks any more
    notShown,        // the client was not told of any of the tracks since it is in control
    positionUnknown, // nobody knows where the surfaces are
    notConnected,    // Pro Tools is not there
    transportRuns,   // it would be disturbed
    ownerChanged,    // another client is in control
    tooMany,         // at once
};

// What was asked for, in both languages.
struct CommandName {
    std::string_view english;
    std::string_view japanese;
};

namespace command_name {

inline constexpr CommandName bankMove{"bank move", "バンク移動"};
inline constexpr CommandName mode{"automation mode", "オートモードの変更"};
inline constexpr CommandName rangeWalk{"reading of modes and pans", "auto/pan の採取"};
inline constexpr CommandName faderWalk{"group faders", "グループのフェーダー"};
inline constexpr CommandName modeWalk{"group automation mode", "グループのオートモード"};
inline constexpr CommandName scan{"rescan", "再計測"};
inline constexpr CommandName press{"button press", "ボタン操作"};
inline constexpr CommandName pan{"pan", "パン操作"};

} // namespace command_name

class DroppedCommands {
public:
    explicit DroppedCommands(ActivityLog& log);

    void tell(CommandName what, DropReason why);

private:
    ActivityLog& log;
};

} // namespace lumbrine
