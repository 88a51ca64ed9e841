#include "tests/simulation/trace.h"

#include "tests/simulation/session_run.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace lumbrine::simulation {

namespace {

std::string inDigits(TimePoint at) {
    const auto nanoseconds = static_cast<long long>(at.time_since_epoch().count());
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%lld.%09lld", nanoseconds / 1'000'000'000,
                  nanoseconds % 1'000'000'000);
    return digits.data();
}

void addHex(std::string& text, ByteView bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    for (const std::uint8_t byte : bytes) {
        text += ' ';
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
}

std::string lineOf(const ScriptingSetter& setter) {
    std::string line =
        "to scripting: command " + std::to_string(setter.command) + " " + (setter.request.enabled ? "on" : "off");
    for (const std::string& track : setter.request.trackNames)
        line += ", " + track;
    return line;
}

bool write(const std::filesystem::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    return file.flush().good();
}

} // namespace

void TraceLines::note(TimePoint at, std::string_view what, ByteView bytes) {
    std::string line(what);
    line += ':';
    addHex(line, bytes);
    note(at, std::move(line));
}

void TraceLines::note(TimePoint at, std::string line) {
    lines.emplace_back(at, std::move(line));
}

std::string TraceLines::text() const {
    const std::multimap<TimePoint, std::string> ordered(lines.begin(), lines.end()); // keeps the order of equals
    std::string text;
    for (const auto& [at, line] : ordered)
        text += inDigits(at) + " " + line + "\n";
    return text;
}

MIDIStatus TracedMIDI::createClient(const std::string& name, MIDIClientRef& client) {
    return services.createClient(name, client);
}

MIDIStatus TracedMIDI::createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    const MIDIStatus status = services.createSource(client, name, source);
    if (status == 0) sources[source] = name;
    return status;
}

MIDIStatus TracedMIDI::createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                         MIDIEndpointRef& destination) {
    return services.createDestination(
        client, name,
        [this, what = "from MIDI " + name, read = std::move(read)](ByteView packet) {
            trace.note(runtime.now(), what, packet);
            read(packet);
        },
        destination);
}

MIDIStatus TracedMIDI::setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) {
    return services.setUniqueID(endpoint, uniqueID);
}

MIDIStatus TracedMIDI::received(MIDIEndpointRef source, ByteView message) {
    trace.note(runtime.now(), "to MIDI " + sources[source], message);
    return services.received(source, message);
}

Scenario traced(Scenario scenario) {
    scenario.turns = VirtualRuntime::Options::Turns::inOrder;
    scenario.hardships.threadStandsStill = false;
    scenario.hardships.mainThreadStalls = false;
    return scenario;
}

bool writeTraces(const std::string& folder, std::uint64_t firstSeed, std::uint64_t lastSeed, const Switches& switches) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    for (std::uint64_t seed = firstSeed; seed <= lastSeed; ++seed) {
        const Scenario scenario = traced(scenarioOf(seed, switches));
        Trace trace;
        const Evidence evidence = runSession(scenario, &trace);
        for (const ScriptingSetter& setter : evidence.setters)
            trace.traffic.note(setter.at, lineOf(setter));
        const std::filesystem::path path = std::filesystem::path(folder) / std::to_string(seed);
        if (!write(path.string() + ".traffic", trace.traffic.text()) ||
            !write(path.string() + ".log", trace.log.text()))
            return false;
    }
    return true;
}

} // namespace lumbrine::simulation
