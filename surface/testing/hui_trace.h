// For tests: records, in order, the messages, log lines and callbacks of an engine.
#pragma once

#include "surface/hui_engine.h"

#include <cmath>
#include <string>
#include <vector>

namespace lumbrine {

// Installs all of the engine's callbacks; lives as long as the engine is used.
class HUITrace {
public:
    explicit HUITrace(HUIEngine& engine) {
        engine.send = [this](ByteView message) { sent.emplace_back(message.begin(), message.end()); };
        engine.log = [this](const std::string& line) { lines.push_back(line); };
        engine.onFaderFeedback = [this](int strip, double value) {
            events.push_back("fader " + std::to_string(strip) + " at " + std::to_string(std::lround(value * 16383)));
        };
        engine.onTrackName = [this](int strip, std::string_view text) {
            events.push_back("name " + std::to_string(strip) + " '" + std::string(text) + "'");
        };
        engine.onMeter = [this](int strip, int side, int level) {
            events.push_back("meter " + std::to_string(strip) + (side == 0 ? " left " : " right ") +
                             std::to_string(level));
        };
        engine.onLed = [this](int zone, int port, bool on) {
            events.push_back("led " + std::to_string(zone) + "/" + std::to_string(port) + (on ? " on" : " off"));
        };
        engine.onVpot = [this](int strip, int value, bool centre, bool rightSide) {
            events.push_back("vpot " + std::to_string(strip) + " at " + std::to_string(value) +
                             (centre ? " centre" : "") + (rightSide ? " right" : " left"));
        };
        engine.onSelectAssign = [this](std::string_view text, std::optional<bool> flag) {
            events.push_back("assign '" + std::string(text) + "'" + (flag ? " flag" : ""));
        };
    }

    HUITrace(const HUITrace&) = delete;
    HUITrace& operator=(const HUITrace&) = delete;

    std::vector<Bytes> sent;
    std::vector<std::string> lines;
    std::vector<std::string> events; // "fader 3 at 8191" (of 16383), "led 3/2 on", "name 2 'Kick'"
};

} // namespace lumbrine
