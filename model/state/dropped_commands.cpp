#include "model/state/dropped_commands.h"

#include <string>

namespace lumbrine {

namespace {

CommandName inWords(DropReason why) {
    switch (why) {
    case DropReason::surfacesBusy:
        return {"the surfaces were busy", "サーフェス使用中のため"};
    case DropReason::faderHeld:
        return {"a fader was in use", "フェーダー操作中のため"};
    case DropReason::trackGone:
        return {"its track is no longer shown", "トラックが表示されていないため"};
    case DropReason::otherTracks:
        return {"the session has other tracks now", "セッションのトラックが変わったため"};
    case DropReason::notShown:
        return {"no track was shown yet", "トラックがまだ表示されていないため"};
    case DropReason::positionUnknown:
        return {"the bank position is unknown", "バンク位置が不明なため"};
    case DropReason::notConnected:
        return {"Pro Tools is not connected", "Pro Tools 未接続のため"};
    case DropReason::transportRuns:
        return {"playing or recording", "再生/録音中のため"};
    case DropReason::ownerChanged:
        return {"another device has taken control", "別の端末に操作が移ったため"};
    case DropReason::tooMany:
        break;
    }
    return {"too many at once", "一度に多すぎるため"};
}

} // namespace

DroppedCommands::DroppedCommands(ActivityLog& log) : log(log) {}

void DroppedCommands::tell(CommandName what, DropReason why) {
    const auto reason = inWords(why);
    log.sayOnceARun("✗ Dropped " + std::string(what.english) + ": " + std::string(reason.english),
                    "✗ " + std::string(what.japanese) + "を中止（" + std::string(reason.japanese) + "）");
}

} // namespace lumbrine
