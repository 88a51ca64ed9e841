// Translates the few texts that Qt itself shows.
#pragma once

#include "base/bilingual.h"

#include <QTranslator>

namespace lumbrine {

// A translator for QCoreApplication::installTranslator. It covers the context menu of selectable texts.
class ToolkitTexts final : public QTranslator {
public:
    explicit ToolkitTexts(Bilingual text) : text(text) {}

    bool isEmpty() const override { return !text.isJa; }
    QString translate(const char* context, const char* source, const char* disambiguation, int count) const override;

private:
    const Bilingual text;
};

} // namespace lumbrine
