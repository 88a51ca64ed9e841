// The list of all tracks with a search field; choosing one brings it to the surfaces.
#pragma once

#include "app/session_page.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <functional>
#include <string>

namespace lumbrine {

class SessionTable;

class SessionBox final : public QDialog {
public:
    struct Listener {
        std::function<void()> searched; // `search` has changed: display again
        std::function<void(std::size_t track)> chosen;
    };

    SessionBox(Listener listener, QWidget* parent);

    std::string search() const;
    void display(const SessionPage& page);

private:
    const Listener listener;
    QLineEdit* const field;
    QTableView* const list;
    SessionTable* const table;
    QLabel* const note;
};

} // namespace lumbrine
