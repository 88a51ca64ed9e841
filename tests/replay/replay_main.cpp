#include "tests/replay/evenings.h"
#include "tests/replay/replay_arguments.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace lumbrine::simulation {
namespace {

ReplayArguments arguments;

// False when there is an argument that nobody knows.
bool readArguments(int count, char** values) {
    for (int i = 1; i < count; i += 2) {
        const std::string name = values[i];
        const std::uint64_t number = i + 1 < count ? std::strtoull(values[i + 1], nullptr, 10) : 0;
        if (name == "--seeds" && number > 0) {
            arguments.lastSeed = number;
        } else if (name == "--seed" && number > 0) {
            arguments.firstSeed = arguments.lastSeed = number;
        } else {
            std::cerr << "replay_tests: cannot do \"" << name << "\"\n";
            return false;
        }
    }
    return true;
}

} // namespace

const ReplayArguments& replayArguments() {
    return arguments;
}

} // namespace lumbrine::simulation

int main(int count, char** values) {
    using namespace lumbrine::simulation;
    if (count == 2 && std::string(values[1]) == "--write") return writeEvenings(eveningsFolder()) ? 0 : 1;
    testing::InitGoogleTest(&count, values);
    if (!readArguments(count, values)) return 2;
    return RUN_ALL_TESTS();
}
