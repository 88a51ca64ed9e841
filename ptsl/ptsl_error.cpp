#include "ptsl/ptsl_error.h"

#include <array>
#include <cstdint>
#include <utility>

namespace lumbrine {

namespace {

constexpr auto refusalNames = std::to_array<std::pair<PTSLRefusal, std::string_view>>({
    {PTSLRefusal::unknownError, "PT_UnknownError"},
    {PTSLRefusal::noOpenSession, "PT_NoOpenedSession"},
    {PTSLRefusal::invalidParameter, "PT_InvalidParameter"},
    {PTSLRefusal::forbidden, "PT_Forbidden"},
    {PTSLRefusal::hostNotReady, "PT_HostNotReady"},
    {PTSLRefusal::commandTimedOut, "PT_CommandTimeout"},
    {PTSLRefusal::hostIsBusy, "PT_HostIsBusy"},
    {PTSLRefusal::versionMismatch, "SDK_VersionMismatch"},
    {PTSLRefusal::sessionID, "SDK_SessionID"},
});

} // namespace

std::string PTSLError::description(const Bilingual& text) const {
    switch (kind) {
    case Case::transport:
        return text("PTSL transport error: ", "PTSL 通信エラー: ") + detail;
    case Case::malformedResponse:
        return text("PTSL malformed response: ", "PTSL 応答が壊れている: ") + detail;
    case Case::commandFailed:
        return text("PTSL command failed: ", "PTSL コマンド失敗: ") + detail;
    case Case::unfinished:
        return text("PTSL gave no result yet", "PTSL の結果がまだ出ていない");
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

bool isNotRunning(const PTSLFailure& failure) {
    const auto* const error = std::get_if<PTSLError>(&failure);
    return error != nullptr && error->kind == PTSLError::Case::notRunning;
}

Verdict verdictOn(const PTSLFailure& failure) {
    if (isNotRunning(failure)) return Verdict::notYet;
    const auto* const error = std::get_if<PTSLError>(&failure);
    if (error == nullptr) return Verdict::unknown; // an answer that nobody can read
    if (error->kind != PTSLError::Case::commandFailed) return Verdict::unknown;
    switch (error->refusal) {
    case PTSLRefusal::noOpenSession: // also while a dialog is shown, after which the command may be carried out
    case PTSLRefusal::commandTimedOut:
        return Verdict::unknown;
    case PTSLRefusal::hostNotReady:
    case PTSLRefusal::hostIsBusy:
    case PTSLRefusal::sessionID:
        return Verdict::notYet;
    default:
        return Verdict::refused;
    }
}

PTSLRefusal refusalIn(const JSONValue& error) {
    const auto* const whole = error.as<JSONValue::Object>();
    const JSONValue* const errors = whole == nullptr ? nullptr : whole->find("errors");
    const auto* const list = errors == nullptr ? nullptr : errors->as<JSONValue::Array>();
    const auto* const first = list == nullptr || list->empty() ? nullptr : list->front().as<JSONValue::Object>();
    const JSONValue* const type = first == nullptr ? nullptr : first->find("command_error_type");
    if (type == nullptr) return PTSLRefusal::none;
    const auto* const number = type->as<std::int64_t>();
    const auto* const word = type->as<std::string>();
    const std::string spelled = number != nullptr ? std::to_string(*number) : word != nullptr ? *word : std::string();
    for (const auto& [refusal, name] : refusalNames)
        if (spelled == name || spelled == "CEType_" + std::string(name) ||
            spelled == std::to_string(static_cast<int>(refusal)))
            return refusal;
    return PTSLRefusal::other;
}

} // namespace lumbrine
