// The box with the keys of paired clients.
#pragma once

#include "app/keys_page.h"

#include <QDialog>
#include <functional>

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace lumbrine {

class KeysBox final : public QDialog {
public:
    struct Listener {
        std::function<void(const std::string& name)> forget = [](const std::string&) {};
        std::function<void()> forgetAll = [] {};
        std::function<void(bool on)> letOnlyPairedIn = [](bool) {};
    };

    KeysBox(Listener boxListener, QWidget* parent);

    // The chosen key stays chosen while it is there.
    void display(const KeysPage& newPage);

private:
    void showChosen();
    std::size_t chosen() const; // a row of the page, or their number

    const Listener listener;
    KeysPage page;
    QLabel* advice;
    QListWidget* list;
    QLabel* code;
    QLabel* letters;
    QPushButton* forget;
    QPushButton* forgetAll;
    QCheckBox* paired;
    QLabel* pairedAdvice;
    QPushButton* close;
};

} // namespace lumbrine
