// A terminal through ncurses.
#pragma once

#include "remote/terminal.h"

#include <map>
#include <optional>
#include <utility>

namespace lumbrine::remote {

// Takes the terminal of this process while it lives; one at a time. What happens to the terminal when the process is
// killed is the caller's business: end the program in an orderly way on signals.
class CursesTerminal final : public Terminal {
public:
    CursesTerminal();
    ~CursesTerminal() override;
    CursesTerminal(const CursesTerminal&) = delete;
    CursesTerminal& operator=(const CursesTerminal&) = delete;

    // False when standard input or output is no terminal.
    static bool possible();

    std::optional<Key> poll() override;
    int rows() override;
    int columns() override;
    void draw(const Canvas& canvas) override;
    void forget() override;

private:
    int attributesOf(const Style& style);
    int pairOf(int foreground, int background);

    std::map<std::pair<int, int>, int> pairs; // colour pair by foreground and background
};

} // namespace lumbrine::remote
