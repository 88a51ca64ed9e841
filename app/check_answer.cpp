#include "app/check_answer.h"

namespace lumbrine {

namespace {

constexpr std::string_view inEnglish = "check en";
constexpr std::string_view inJapanese = "check ja";
constexpr std::string_view fine = "fine";
constexpr std::string_view wrong = "wrong";

std::string takeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    std::string line(rest.substr(0, end));
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    return line;
}

} // namespace

std::string checkName(std::uint16_t port) {
    return "lumbrine-check-" + std::to_string(port);
}

std::string checkQuestion(const Bilingual& text) {
    return text(inEnglish, inJapanese);
}

std::string answerTo(std::string_view question, const ReceiverNow& now, HostSystem system) {
    const Bilingual text(question == inJapanese);
    std::vector<Check> checks = diagnosis(now.published, system, text);
    checks.push_back(outputCheck(now.outputBacklog, text));
    const LinkHealth& announcement = now.published.health.announcement;
    const bool isAnnounced = announcement.state == LinkHealth::State::up;
    return std::string(isAnyWrong(checks) ? wrong : fine) + "\n" + (isAnnounced ? announcement.detail : "") + "\n" +
           listed(checks);
}

std::optional<CheckAnswer> readAnswer(const std::string& answer) {
    std::string_view rest = answer;
    const std::string verdict = takeLine(rest);
    if (verdict != fine && verdict != wrong) return std::nullopt;
    std::string announcedAs = takeLine(rest);
    return CheckAnswer{.anyWrong = verdict == wrong, .announcedAs = std::move(announcedAs), .list = std::string(rest)};
}

} // namespace lumbrine
