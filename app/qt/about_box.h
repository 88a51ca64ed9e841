// The box with the version and what is running, and a report to copy or to save.
#pragma once

#include "app/receiver_app.h"

#include <QDialog>
#include <functional>
#include <string>

namespace lumbrine {

class AboutBox final : public QDialog {
public:
    // Saves the report to a file, and says how it went on the main thread, perhaps after the box has gone.
    using Save = std::function<void(const std::string& file, std::function<void(const ReceiverApp::Saved&)> done)>;

    AboutBox(const AboutText& text, Save save, QWidget* parent);

private:
    void chooseFile(const AboutText& text, const Save& save);
};

} // namespace lumbrine
