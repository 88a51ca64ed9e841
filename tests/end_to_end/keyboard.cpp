#include "tests/end_to_end/keyboard.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

namespace lumbrine::end_to_end {

Keyboard::Keyboard() {
    if (::mkfifo(path().c_str(), 0600) != 0) throw std::runtime_error("no pipe");
    descriptor = ::open(path().c_str(), O_RDWR | O_CLOEXEC);
}

Keyboard::~Keyboard() {
    ::close(descriptor);
}

std::vector<std::string> Keyboard::command(const std::string& program, const std::vector<std::string>& options) const {
    std::vector<std::string> words{"sh", "-c", "exec < \"$0\"; exec \"$@\"", path(), program};
    words.insert(words.end(), options.begin(), options.end());
    return words;
}

void Keyboard::type(const std::string& line) {
    const std::string typed = line + "\n";
    if (::write(descriptor, typed.data(), typed.size()) != static_cast<ssize_t>(typed.size()))
        throw std::runtime_error("the program does not read");
}

} // namespace lumbrine::end_to_end
