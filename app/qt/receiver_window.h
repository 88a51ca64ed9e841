// The main window: draws a ReceiverView and the log, and reports the user's actions.
#pragma once

#include "app/log_record.h"
#include "app/receiver_screen.h"
#include "app/set_up_card.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QWidget>
#include <array>
#include <functional>

namespace lumbrine {

class LogView;
class NoticeBox;
class SetUpBox;
class StatusRow;
class StripsView;

class ReceiverWindow final : public QWidget {
public:
    struct Listener {
        std::function<void(ScreenAction)> act;
        std::function<void()> appeared; // the window is on the screen, for the first time or again
        std::function<void()> closed;   // the user has closed, and so hidden, the window
    };

    explicit ReceiverWindow(Listener listener);

    void display(const ReceiverView& view, const SetUpCard& card, const std::vector<LogRow>& logRows);

    // False while the window is hidden or minimised. Then calls of `display` may be skipped.
    bool isOnScreen() const { return isVisible() && !isMinimized(); }

    StripsView& stripsView() { return *strips; }
    LogView& logView() { return *log; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    void arrange();
    QLayout* makeHeading();
    QLayout* makeAddressRow();
    QAbstractButton* makeButton(const QString& shortcut);
    void addKeys();
    void display(QAbstractButton* button, const ScreenButton& shown);
    void display(const ScreenToggle& toggle);
    void keepTallEnough();

    const Listener listener;
    QLabel* const heading;
    StatusRow* const proTools;
    StatusRow* const client;
    NoticeBox* const notice;
    SetUpBox* const setUp;
    QAbstractButton* const session;
    QAbstractButton* const about; // the tab key goes through the controls in this order
    QAbstractButton* const reconnect;
    QAbstractButton* const test;
    QAbstractButton* const connectPhone;
    QLabel* const addressTitle;
    QLabel* const address;
    std::array<QAbstractButton*, 4> moves;
    QLabel* const position;
    StripsView* const strips;
    QLabel* const logHeading;
    QCheckBox* const onlyProblems;
    LogView* const log;
};

} // namespace lumbrine
