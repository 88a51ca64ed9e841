// Lines of text from a file descriptor, such as standard input, on a thread of their own.
#pragma once

#include <functional>
#include <string>
#include <thread>

namespace lumbrine {

class LineInput {
public:
    // `line` is called with each line without its newline, on the reader's thread; what follows the last newline is a
    // line too. The descriptor stays the caller's, and nobody else reads from it meanwhile. Reading ends with the
    // input.
    LineInput(int fileDescriptor, std::function<void(std::string)> line);

    // No call comes afterwards. Not from `line`.
    ~LineInput();

    LineInput(const LineInput&) = delete;
    LineInput& operator=(const LineInput&) = delete;

private:
    void read();
    bool waitForInput() const; // false when the end was asked for

    const int input;
    const std::function<void(std::string)> callback;
    int wakePipe[2] = {-1, -1}; // closing its writing end wakes the reader
    std::thread thread;
};

} // namespace lumbrine
