// A pattern for the line of a message (remote/message_line.h). Scripts wait for lines that match.
//
// The words of the pattern are compared with the words of the line in order; the line may have more words at its end.
// So "fader 3" matches every fader message of strip 3. A word of the form key=value may skip words of the line:
// "switches 3=M--" checks only strip 3. In a word or a value, * stands for any characters and ? for one character;
// ~0.72 matches numbers within 0.005 of 0.72; <, <=, > and >= compare numbers.
#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::remote {

class Expectation {
public:
    // Fails with a description when the pattern has no word, or a comparison without a number.
    static std::expected<Expectation, std::string> of(std::string_view pattern);

    bool fits(std::string_view line) const;

    const std::string& text() const { return pattern; }

private:
    explicit Expectation(std::string_view text);

    std::string pattern;
    std::vector<std::string> words;
};

} // namespace lumbrine::remote
