// Standard input of a program that a test starts, typed by the test.
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

    // What a ChildProcess has to run so that the program reads from this keyboard.
    std::vector<std::string> command(const std::string& program, const std::vector<std::string>& options) const;

    void type(const std::string& line);

private:
    std::string path() const { return folder.path / "keyboard"; }

    const interop::TemporaryFolder folder;
    int descriptor;
};

} // namespace lumbrine::end_to_end
