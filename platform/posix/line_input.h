// Reads lines of text from a file descriptor, such as standard input, on its own thread.
#pragma once

#include <functional>
#include <string>
#include <thread>

namespace lumbrine {

class LineInput {
public:
    // Calls `callback` on the reader's thread with each line, without its newline. Text after the last newline counts
    // as a line. Reading ends at the end of the input. The caller keeps the descriptor open; nothing else may read from
    // it while this object lives.
    LineInput(int fileDescriptor, std::function<void(std::string)> callback);

    // Ends the reading; no call follows. Must not be called from `callback`.
    ~LineInput();

    LineInput(const LineInput&) = delete;
    LineInput& operator=(const LineInput&) = delete;

private:
    void read();
    bool waitForInput() const; // false when the destructor wants the thread to end

    const int input;
    const std::function<void(std::string)> callback;
    int wakePipe[2] = {-1, -1}; // the destructor closes the writing end to wake the reader
    std::thread thread;
};

} // namespace lumbrine
