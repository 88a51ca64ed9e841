// The box with the version and what is running, and a report to copy.
#pragma once

#include "app/about_text.h"

#include <QDialog>

namespace lumbrine {

class AboutBox final : public QDialog {
public:
    AboutBox(const AboutText& text, QWidget* parent);
};

} // namespace lumbrine
