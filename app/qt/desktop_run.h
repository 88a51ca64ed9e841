// Runs a desktop program, from opening the window to the end that the user, a signal or the window system asks for.
#pragma once

#include "app/receiver_app.h"
#include "platform/api/process_end.h"
#include "platform/api/stream_socket.h"
#include "platform/posix/real_runtime.h"
#include "platform/qt/qt_main_loop.h"
#include "platform/qt/single_instance.h"

#include <functional>
#include <memory>
#include <string>

class QApplication;

namespace lumbrine {

class KeyKeeper;

// Opens the window system's display. Where there is none, ends the program with a line on standard error and status 1.
std::unique_ptr<QApplication> openDisplay(const std::string& program, const Bilingual& text, int& count,
                                          char** arguments);

struct DesktopRun {
    QtMainLoop& loop;
    RealRuntime& runtime;
    ProcessEnd& process;
    StreamSockets& streams;
    ReceiverApp& app;
    SingleInstance& instance;
    QString identifier; // the program's name on the message bus

    // Set by `run` for its duration. Calling it starts the receiver, and opens the window unless `hidden` is true.
    std::function<void()>& begin;

    // Set by `run` for its duration. Calling it on the main thread ends the program; signals do.
    std::function<void()>& end;

    bool hidden = false;       // the status icon and a second start show the window
    KeyKeeper* keys = nullptr; // see ReceiverShell

    // Returns when the receiver is destroyed and the runtime is shut down.
    void run();
};

// What Qt knows of the surroundings of a ReceiverApp.
ReceiverApp::Surroundings surroundings(Runtime& runtime, HostNames& hosts, const std::string& version);

// Sets the program's name, icon and language in Qt, and keeps the program running when its last window is closed. Call
// it after creating the QApplication.
void introduceProgram(const QString& identifier, Bilingual text);

} // namespace lumbrine
