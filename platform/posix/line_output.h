// Writes lines of text to a file descriptor, such as standard output, on its own thread.
#pragma once

#include "base/ring_queue.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace lumbrine {

// Nobody has to read what is written: while the descriptor takes nothing, at most `capacity` lines wait, and further
// ones are dropped and counted. A line that the system refuses, because the reader has gone or the disk is full, is
// dropped without being counted.
class LineOutput {
public:
    static constexpr std::size_t capacity = 1000;

    // `missing` makes the line that is written in place of that many dropped ones. The caller keeps the descriptor
    // open. Create it after TerminationSignals, like every thread.
    LineOutput(int fileDescriptor, std::function<std::string(std::size_t lines)> missing);

    // Waits until all lines that wait are written, however long the reader takes.
    ~LineOutput();

    LineOutput(const LineOutput&) = delete;
    LineOutput& operator=(const LineOutput&) = delete;

    // Adds a line, without its newline. Never waits for the reader. Any thread.
    void print(const std::string& line);

    // How many lines wait or were dropped since the newest of those that wait. Any thread.
    std::size_t backlog();

    // Waits until the lines that were added before are written, however long the reader takes. For a program that ends
    // without destructors. Any thread but the writer's.
    void flush();

private:
    void work();
    void noteMissing(); // caller holds the lock
    void write(std::string_view text) const;

    const int output;
    const std::function<std::string(std::size_t)> missingLine;

    std::mutex mutex;
    std::condition_variable changed; // a line waits, or the end has come
    std::condition_variable written; // no line waits, and none is being written
    RingQueue<std::string> waiting;
    std::size_t missing = 0; // dropped since the newest of those that wait
    bool writing = false;
    bool ending = false;

    std::thread thread;
};

} // namespace lumbrine
