// For tests: a screen reader. Programs that find one on the message bus describe their windows to it, and tell it what
// happens in them (AT-SPI).
//
//     MessageBus bus;
//     ScreenReader reader(bus);
//     ChildProcess program({...}, {.environment = {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}}});
//     bus.waitUntil([&] { return reader.knowsAProgram(); });
//     reader.read();
#pragma once

#include "tests/desktop/message_bus.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::desktop {

// One thing in a window, as a reader knows it.
struct Element {
    std::string role; // "push button"
    std::string name;
    std::string description;
    std::optional<double> value; // of a slider
    bool selected = false;
    bool focusable = false;
    bool showing = false;
};

class ScreenReader {
public:
    explicit ScreenReader(MessageBus& bus);
    ~ScreenReader();

    bool knowsAProgram() const;

    // Everything of the program that is on the screen, in its own order.
    std::vector<Element> read() const;

    // The notifications that have appeared, in their order. As a reader does, it asks for the name of one when it sees
    // it, which is in this call.
    const std::vector<std::string>& announcements();

private:
    class Services;

    Element elementAt(const QString& path) const;
    void collect(const QString& path, std::vector<Element>& found) const;

    MessageBus& bus;
    const std::unique_ptr<Services> services;
    const interop::ChildProcess monitor; // writes down what programs tell readers
    std::size_t lookedAt = 0;            // of the appearances that it has written down
    std::vector<std::string> spoken;
};

} // namespace lumbrine::desktop
