#include "app/qt/log_view.h"
#include "app/qt/testing/offscreen.h"
#include "app/qt/toolkit_texts.h"

namespace lumbrine {
namespace {

std::vector<std::string> menuOfTheLog() {
    LogView view(nullptr);
    view.display({{1, "", "one line"}});
    view.selectAll();
    std::vector<std::string> titles;
    const std::unique_ptr<QMenu> menu(view.createStandardContextMenu());
    for (const QAction* action : menu->actions())
        titles.push_back(action->text().section('\t', 0, 0).toStdString());
    return titles;
}

TEST(ToolkitTexts, SpeakTheUsersLanguageInTheMenuOfTheLog) {
    ToolkitTexts texts{Bilingual(true)};
    QCoreApplication::installTranslator(&texts);
    EXPECT_THAT(menuOfTheLog(), testing::Contains("コピー(&C)"));
    EXPECT_THAT(menuOfTheLog(), testing::Contains("すべて選択"));
    QCoreApplication::removeTranslator(&texts);
}

TEST(ToolkitTexts, LeaveEnglishAsItIs) {
    ToolkitTexts texts{Bilingual(false)};
    QCoreApplication::installTranslator(&texts);
    EXPECT_THAT(menuOfTheLog(), testing::Contains("&Copy"));
    QCoreApplication::removeTranslator(&texts);
}

} // namespace
} // namespace lumbrine
