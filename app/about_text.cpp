#include "app/about_text.h"

namespace lumbrine {

AboutText aboutText(const AboutFacts& facts, const Bilingual& text) {
    const std::string heading = "Lumbrine " + facts.version;
    const std::string body = listed(facts.checks);
    return {.title = text("About Lumbrine", "Lumbrine について"),
            .heading = heading,
            .body = body,
            .copyButton = text("Copy report", "レポートをコピー"),
            .saveButton = facts.recorded ? text("Save report…", "レポートを保存…") : "",
            .notSaved = text("The report was not saved:", "レポートを保存できませんでした："),
            .closeButton = text("Close", "閉じる"),
            .report = heading + "\n" + facts.systemName + "\n\n" + body + "\n" + facts.log};
}

} // namespace lumbrine
