#include "ptsl/ptsl_error.h"

namespace lumbrine {

std::string PTSLError::description(const Bilingual& text) const {
    switch (kind) {
    case Case::transport:
        return text("PTSL transport error: ", "PTSL 通信エラー: ") + detail;
    case Case::malformedResponse:
        return text("PTSL malformed response: ", "PTSL 応答が壊れている: ") + detail;
    case Case::commandFailed:
        return text("PTSL command failed: ", "PTSL コマンド失敗: ") + detail;
    case Case::notRunning:
        return text("Cannot reach Pro Tools' PTSL (not running or disabled)",
                    "Pro Tools の PTSL に繋がらない (未起動か無効)");
    case Case::timedOut:
        break;
    }
    return text("PTSL response timed out", "PTSL の応答待ちがタイムアウト");
}

std::string description(const PTSLFailure& failure, const Bilingual& text) {
    if (const auto* const error = std::get_if<PTSLError>(&failure)) return error->description(text);
    return std::get<JSONError>(failure).text;
}

bool isCommandFailed(const PTSLFailure& failure) {
    const auto* const error = std::get_if<PTSLError>(&failure);
    return error != nullptr && error->kind == PTSLError::Case::commandFailed;
}

} // namespace lumbrine
