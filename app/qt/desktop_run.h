// A desktop program's life: from the first sight of the window to the end that the user, a signal or the window system
// asks for.
#pragma once

#include "app/receiver_app.h"
#include "platform/api/stream_socket.h"
#include "platform/posix/real_runtime.h"
#include "platform/qt/qt_main_loop.h"
#include "platform/qt/single_instance.h"

#include <functional>

namespace lumbrine {

struct DesktopRun {
    QtMainLoop& loop;
    RealRuntime& runtime;
    StreamSockets& streams;
    ReceiverApp& app;
    SingleInstance& instance;
    QString identifier; // on the message bus

    // Opens the window for the first time, which starts the receiver; set while `run` runs.
    std::function<void()>& begin;

    // Ends the program when it is called on the main thread; set while `run` runs, for signals.
    std::function<void()>& end;

    // Returns when the receiver is gone; the runtime has been shut down then.
    void run();
};

// Tells the toolkit who the program is and which language it speaks. After the application object is there; the program
// does not end with its last window.
void introduceProgram(const QString& identifier, Bilingual text);

} // namespace lumbrine
