// The upper part of the window: the state of Pro Tools and of the client, and the notice while Pro Tools is missing.
#pragma once

#include "app/receiver_screen.h"

#include <QFrame>
#include <QLabel>

namespace lumbrine {

// A frame with round corners that stands out from the window.
class Card : public QFrame {
public:
    explicit Card(QWidget* parent) : QFrame(parent) {}

protected:
    void paintEvent(QPaintEvent* event) override;
};

// A light that is on or off, a title and a detail.
class StatusRow final : public QWidget {
public:
    explicit StatusRow(QWidget* parent);

    void display(const StatusItem& item);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void tint();

    QLabel* const title;
    QLabel* const detail;
    bool lit = false;
};

// A symbol and a paragraph on the background colour of warnings.
class NoticeBox final : public QFrame {
public:
    explicit NoticeBox(QWidget* parent);

    void display(const ScreenNotice& notice);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* const paragraph;
    Symbol symbol = Symbol::warning;
};

} // namespace lumbrine
