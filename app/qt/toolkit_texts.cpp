#include "app/qt/toolkit_texts.h"

#include <string_view>

namespace lumbrine {

QString ToolkitTexts::translate(const char*, const char* source, const char*, int) const {
    if (!text.isJa) return {};
    const std::string_view wanted(source);
    if (wanted == "&Copy") return QStringLiteral("コピー(&C)");
    if (wanted == "Select All") return QStringLiteral("すべて選択");
    return {};
}

} // namespace lumbrine
