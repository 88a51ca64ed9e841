// The recording of everything that crosses the receiver's seams: always on, in a file of fixed size, at no cost that
// anybody feels. What cannot be recorded is said once, and the receiver goes on without.
#pragma once

#include "app/blackbox_setting.h"
#include "base/bilingual.h"
#include "model/receiver_model.h"

#include <memory>
#include <optional>
#include <string>

namespace lumbrine {

class RecordedSeams;

class FlightRecorder {
public:
    // Opens the file. `program`: name, version and system as a reader of the recording sees them. Create it after the
    // runtime and before the MIDI services, which call it as long as they live. Main thread.
    FlightRecorder(Runtime& runtime, const std::optional<BlackboxSetting>& setting, std::string program,
                   Bilingual text);
    ~FlightRecorder();
    FlightRecorder(const FlightRecorder&) = delete;
    FlightRecorder& operator=(const FlightRecorder&) = delete;

    // False where the setting wants no recording, or none is possible.
    bool isRecording() const { return recording != nullptr; }

    // The platform for the model: `real`, recorded. Call it once. What `real` refers to outlives the model.
    ReceiverPlatform recorded(const ReceiverPlatform& real);

    // Records each line of the log before `sink` gets it.
    ReceiverModel::LineSink recorded(ReceiverModel::LineSink sink) const;

    // Keeps the recording in order from time to time, and tells the log what is wrong with it. Call it when the log is
    // there. Main thread.
    void keepUp(const std::shared_ptr<ReceiverModel>& model);

    // Notes that the program ends; so does the destructor. Without this note, the program was killed.
    void end();

private:
    struct Recording;

    void look(const std::weak_ptr<ReceiverModel>& model);
    static void tell(const std::weak_ptr<ReceiverModel>& model, const std::string& line);

    Runtime& runtime;
    const Bilingual text;
    std::string problem;                  // that the log is to be told; empty for none
    std::shared_ptr<Recording> recording; // null for none
    std::unique_ptr<RecordedSeams> seams;
    std::unique_ptr<RepeatingTimer> timer;
    bool ended = false;
    bool toldOfLoss = false;
    bool toldOfClock = false;
};

} // namespace lumbrine
