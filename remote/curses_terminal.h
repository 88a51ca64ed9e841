// A terminal, by means of ncurses.
#pragma once

#include "remote/terminal.h"

#include <map>
#include <optional>
#include <utility>

namespace lumbrine::remote {

// Controls the terminal of this process while it lives. Only one may exist at a time. It restores the terminal only in
// its destructor, so the program must end in an orderly way on signals.
class CursesTerminal final : public Terminal {
public:
    CursesTerminal();
    ~CursesTerminal() override;
    CursesTerminal(const CursesTerminal&) = delete;
    CursesTerminal& operator=(const CursesTerminal&) = delete;

    // False when standard input or standard output is not a terminal.
    static bool possible();

    std::optional<Key> poll() override;
    int rows() override;
    int columns() override;
    void draw(const Canvas& canvas) override;
    void forget() override;

private:
    int attributesOf(const Style& style);
    int pairOf(int foreground, int background);

    std::map<std::pair<int, int>, int> pairs; // curses' colour pair for each foreground and background in use
};

} // namespace lumbrine::remote
