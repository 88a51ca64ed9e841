// What a script waits for: a pattern for the line of a message (remote/message_line.h).
//
// The words of a pattern are compared with those of the line one after another, and the line may go on: "fader 3" fits
// every fader message of strip 3. A word of the form key=value may pass over words of the line: "switches 3=M--" looks
// at strip 3 alone. In a word or a value, * stands for any characters and ? for one; ~0.72 is a number within 0.005 of
// that; <, <=, > and >= compare numbers.
#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::remote {

class Expectation {
public:
    // What is wrong with it when it has no word, or a comparison without a number.
    static std::expected<Expectation, std::string> of(std::string_view pattern);

    bool fits(std::string_view line) const;

    const std::string& text() const { return pattern; }

private:
    explicit Expectation(std::string_view text);

    std::string pattern;
    std::vector<std::string> words;
};

} // namespace lumbrine::remote
