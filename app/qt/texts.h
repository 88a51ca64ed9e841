// Texts between the program's UTF-8 and the toolkit.
#pragma once

#include <QString>
#include <string_view>

namespace lumbrine {

inline QString shown(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace lumbrine
