// Converts UTF-8 texts of the program to Qt's strings.
#pragma once

#include <QString>
#include <string_view>

namespace lumbrine {

inline QString shown(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The text of a tooltip. As rich text it wraps; it is escaped, so that a track name with markup is shown literally.
inline QString shownTip(std::string_view text) {
    return QStringLiteral("<qt>") + shown(text).toHtmlEscaped() + QStringLiteral("</qt>");
}

} // namespace lumbrine
