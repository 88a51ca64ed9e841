// The words of a user's command, and the result type of commands.
#pragma once

#include "base/decimal_number.h"
#include "simulator/simulated_pro_tools.h"

#include <algorithm>
#include <charconv>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine::user_command {

using Failure = std::unexpected<std::string>;
using Result = std::expected<std::string, std::string>; // the answer for the user, or what is wrong

// Reads a line word by word.
class Arguments {
public:
    explicit Arguments(std::string_view line) : rest(line) { skipBlanks(); }

    std::string_view word() {
        const std::size_t length = std::min(rest.find(' '), rest.size());
        const std::string_view found = rest.substr(0, length);
        rest.remove_prefix(length);
        skipBlanks();
        return found;
    }

    std::string_view remaining() const { return rest; }
    bool atEnd() const { return rest.empty(); }

    template <typename Whole>
    std::optional<Whole> number() {
        const std::string_view digits = word();
        Whole value{};
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
        return value;
    }

    std::optional<double> within(double least, double most) {
        const auto value = decimalNumber(word());
        return value && *value >= least && *value <= most ? value : std::nullopt;
    }

    // Reads the number of a track (from 1) and returns its index in the session (from 0).
    std::optional<std::size_t> trackIndex(const SimulatedSession& session) {
        const auto value = number<std::size_t>();
        if (!value || *value < 1 || *value > session.tracks().size()) return std::nullopt;
        return *value - 1;
    }

private:
    void skipBlanks() { rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size())); }

    std::string_view rest;
};

inline Failure wrong() {
    return Failure("");
}

} // namespace lumbrine::user_command
