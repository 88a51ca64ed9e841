#include "app/about_text.h"

namespace lumbrine {
namespace {

AboutFacts someFacts() {
    return {.version = "1.2.3",
            .systemName = "Debian GNU/Linux 12",
            .checks = {{.id = "port", .state = CheckState::fine, .title = "Network port", .sentence = "It is open."}},
            .log = "14:03:59  ✓ UDP listening on :52700\n"};
}

TEST(AboutText, TellsTheVersionAndWhatIsRunning) {
    const AboutText about = aboutText(someFacts(), Bilingual(false));
    EXPECT_EQ(about.title, "About Lumbrine");
    EXPECT_EQ(about.heading, "Lumbrine 1.2.3");
    EXPECT_EQ(about.body, "✓ Network port: It is open.\n");
}

TEST(AboutText, HasAReportWithEverythingThatHelps) {
    EXPECT_EQ(aboutText(someFacts(), Bilingual(false)).report, "Lumbrine 1.2.3\n"
                                                               "Debian GNU/Linux 12\n"
                                                               "\n"
                                                               "✓ Network port: It is open.\n"
                                                               "\n"
                                                               "14:03:59  ✓ UDP listening on :52700\n");
}

TEST(AboutText, OffersToSaveWhatIsRecorded) {
    AboutFacts facts = someFacts();
    EXPECT_EQ(aboutText(facts, Bilingual(false)).saveButton, "");
    facts.recorded = true;
    EXPECT_EQ(aboutText(facts, Bilingual(false)).saveButton, "Save report…");
    EXPECT_EQ(aboutText(facts, Bilingual(true)).saveButton, "レポートを保存…");
}

} // namespace
} // namespace lumbrine
