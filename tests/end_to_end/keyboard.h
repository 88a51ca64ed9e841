// For tests: the standard input of a started program, typed by the test.
#pragma once

#include "tests/interop/child_process.h"

#include <string>
#include <vector>

namespace lumbrine::end_to_end {

class Keyboard {
public:
    Keyboard();
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    // The command for a ChildProcess whose program reads from this keyboard.
    std::vector<std::string> command(const std::string& program, const std::vector<std::string>& options) const;

    void type(const std::string& line);

private:
    std::string path() const { return folder.path / "keyboard"; }

    const interop::TemporaryFolder folder;
    int descriptor;
};

} // namespace lumbrine::end_to_end
