// Texts between the program's UTF-8 and the toolkit.
#pragma once

#include <QString>
#include <string_view>

namespace lumbrine {

inline QString shown(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// What appears on hovering: a long text wraps, and whatever is in it, a track's name too, is shown as it is.
inline QString shownTip(std::string_view text) {
    return QStringLiteral("<qt>") + shown(text).toHtmlEscaped() + QStringLiteral("</qt>");
}

} // namespace lumbrine
