// The few texts that the toolkit itself shows, in the user's language.
#pragma once

#include "base/bilingual.h"

#include <QTranslator>

namespace lumbrine {

// To be installed in the application. Knows what stands in the menus of texts that can be selected.
class ToolkitTexts final : public QTranslator {
public:
    explicit ToolkitTexts(Bilingual bilingual) : text(bilingual) {}

    bool isEmpty() const override { return !text.isJa; }
    QString translate(const char* context, const char* source, const char* disambiguation, int count) const override;

private:
    const Bilingual text;
};

} // namespace lumbrine
