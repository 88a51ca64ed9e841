// Pro Tools on surface A, as far as banks and automation modes go: it reacts at once to the bank buttons, shows the
// names of its tracks, and shows a mode while an AUTO switch is held. Its last bank is full; bank buttons lead to
// multiples of 8.
#pragma once

#include "model/testing/model_bench.h"

#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

class BankingHost {
public:
    // Shows the first tracks at once. Names are at most four characters long.
    BankingHost(ModelBench& modelBench, std::vector<std::string> trackNames);

    // Sends the names of all strips again.
    void show();

    // By hand, on its own screen.
    void scrollTo(int newOffset);

    std::vector<std::string> names;
    std::vector<std::string> modes; // of the tracks, as displays show them: "Tch"; shorter than the names, or empty
    std::vector<double> faders;     // of the tracks; none are shown when it is empty
    int offset = 0;
    bool deaf = false; // does not react to anything

private:
    void heard(ByteView packet);
    void press(int port);
    void holdAuto(int strip, bool held);
    int lastOffset() const;
    std::string nameOn(int strip) const;

    ModelBench& bench;
    int zone = 0;
    std::unique_ptr<MIDIConnection> connection;
};

// "01", "02" and so on.
std::vector<std::string> numbers(int count);

} // namespace lumbrine
