// The bytes in docs/scripting-link.md, held against what the link sends and understands.
#include "tests/ptsl_client/envelope_service.h"

#include <fstream>

namespace lumbrine::service {
namespace {

// Hexadecimal bytes and quoted text at the beginning of a line; two blanks end them.
void appendBytes(Bytes& bytes, std::string_view line) {
    while (!line.empty() && line.front() != ' ') {
        std::size_t length = 2;
        if (line.front() == '\'') {
            length = line.find('\'', 1) + 1;
            bytes.insert(bytes.end(), line.begin() + 1, line.begin() + static_cast<std::ptrdiff_t>(length) - 1);
        } else {
            bytes.push_back(static_cast<std::uint8_t>(std::stoul(std::string(line.substr(0, length)), nullptr, 16)));
        }
        line.remove_prefix(std::min(length + 1, line.size()));
    }
}

Bytes example(const std::string& name) {
    std::ifstream document(LUMBRINE_SOURCE_DIR "/docs/scripting-link.md");
    Bytes bytes;
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
        if (inside && line == "```") break;
        if (inside) appendBytes(bytes, line);
        inside = inside || line == "```" + name;
    }
    EXPECT_FALSE(bytes.empty()) << name;
    return bytes;
}

using ScriptingLinkDocument = ClientTest;

TEST_F(ScriptingLinkDocument, ShowsWhatAConnectionAndItsFirstCallSend) {
    scripted.answer = nullptr;
    EXPECT_FALSE(client.trackList());
    Bytes expected = example("sent opening");
    const Bytes call = example("sent register");
    expected.insert(expected.end(), call.begin(), call.end());
    EXPECT_EQ(scripted.received.at(0), expected);
}

TEST_F(ScriptingLinkDocument, ShowsAResponseAndWhatItIsAnsweredWith) {
    scripted.answer = [](ScriptedService::Call& call) {
        if (call.number == 1) call.line.send(example("received register"));
    };
    EXPECT_FALSE(client.trackList());
    const Bytes& sent = scripted.received.at(0);
    const Bytes answers = example("sent answers");
    EXPECT_FALSE(std::ranges::search(sent, answers).empty());
    const Bytes session{0x0A, 0x08, 0x10, 0x03, 0x18, 0x05, 0x22, 0x02, 'S', '1'};
    EXPECT_FALSE(std::ranges::search(sent, session).empty());
}

} // namespace
} // namespace lumbrine::service
