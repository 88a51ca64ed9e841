#include "tools/blackbox/record_words.h"

#include "blackbox/payload.h"
#include "remote/terminal_text.h"
#include "tools/blackbox/command_words.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace lumbrine::blackbox {

namespace {

constexpr std::size_t longestSnippet = 100; // of a stream's readable text

std::string printed(std::string_view text) {
    return remote::printable(std::string(text));
}

std::string failure(std::int32_t result) {
    if (result >= 0) return {};
    return std::string(" failed: error ") + std::to_string(-result);
}

// The array is in the order of the event's numbers.
template <std::size_t size>
std::string nameIn(const std::array<const char*, size>& names, std::size_t number) {
    return number < size ? names[number] : "event " + std::to_string(number);
}

std::string anchorText(const Record& record) {
    constexpr std::array names{"still running", "program began", "program ended"};
    const auto head = headOf<AnchorHead>(record);
    if (!head) return "anchor";
    return nameIn(names, record.channel) + ": " + printed(asText(behind<AnchorHead>(record))) + ", process " +
           std::to_string(head->process);
}

std::string socketText(const Record& record) {
    constexpr std::array names{"socket opened", "socket bound", "receiving ended", "socket closed",
                               "that was the receiver's own address"};
    const auto head = headOf<SocketHead>(record);
    if (!head) return "socket";
    return nameIn(names, record.channel) + (head->port == 0 ? "" : " to port " + std::to_string(head->port)) +
           failure(head->result);
}

std::string portText(const Record& record) {
    constexpr std::array names{"MIDI source", "MIDI destination", "MIDI ports are back", "MIDI service lost",
                               "MIDI service there"};
    const auto head = headOf<ResultHead>(record);
    if (!head) return "MIDI port";
    const std::string name = printed(asText(behind<ResultHead>(record)));
    return nameIn(names, record.channel) + (name.empty() ? "" : " " + name) +
           (head->result == 0 ? "" : " failed: status " + std::to_string(head->result));
}

std::string streamText(const Record& record) {
    constexpr std::array names{"connected", "receiving ended", "sending failed", "closed"};
    const auto head = headOf<StreamHead>(record);
    if (!head) return "connection";
    const std::string peer = printed(asText(behind<StreamHead>(record)));
    return nameIn(names, static_cast<std::size_t>(head->event)) + (peer.empty() ? "" : " to " + peer) +
           failure(head->result);
}

// The number of bytes, and the longest readable piece among them: names and values stand in frames as plain text.
std::string bytesText(ByteView bytes) {
    std::string_view longest;
    const std::string_view all = asText(bytes);
    for (std::size_t begin = 0; begin < all.size();) {
        const auto isReadable = [](char c) { return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F; };
        const auto* const end = std::find_if_not(all.begin() + begin, all.end(), isReadable);
        const auto size = static_cast<std::size_t>(end - all.begin()) - begin;
        if (size > longest.size()) longest = all.substr(begin, size);
        begin += size + 1;
    }
    const std::string count = std::to_string(bytes.size()) + " bytes";
    return longest.size() < 8 ? count : count + " " + printed(longest.substr(0, longestSnippet));
}

std::string screenText(const Record& record) {
    const auto head = headOf<ScreenHead>(record);
    if (!head) return "screen";
    const std::string text = printed(asText(behind<ScreenHead>(record)));
    const std::string element = "#" + std::to_string(head->element);
    const char* const failed = head->result == -2 ? " refused" : head->result < 0 ? " no answer" : "";
    switch (static_cast<ScreenEvent>(record.channel)) {
    case ScreenEvent::trust:
        return head->result == 1 ? "trusted" : "not trusted";
    case ScreenEvent::application:
        return text + (head->result < 0 ? " does not run" : " is process " + std::to_string(head->result));
    case ScreenEvent::read:
        return element + " " + text + failed;
    case ScreenEvent::pressed:
        return element + " " + text + (head->result < 0 ? " not accepted" : "");
    }
    return "screen " + text;
}

RecordWords datagram(const Record& record, const char* arrow, DatagramWords (*read)(ByteView)) {
    const auto head = headOf<DatagramHead>(record);
    if (!head) return {"datagram"};
    DatagramWords words = read(behind<DatagramHead>(record));
    RecordWords all{addressText(head->peer) + " " + arrow + " " + words.text + failure(head->result)};
    if (words.strip) all.strips.push_back(*words.strip);
    return all;
}

std::string stream(const Record& record, const char* arrow) {
    return "connection " + std::to_string(record.channel) + " " + arrow + " " + bytesText(record.payload);
}

} // namespace

Topic topicOf(Kind kind) {
    switch (kind) {
    case Kind::datagramIn:
    case Kind::datagramOut:
        return Topic::datagrams;
    case Kind::midiIn:
    case Kind::midiOut:
        return Topic::midi;
    case Kind::stream:
    case Kind::streamIn:
    case Kind::streamOut:
        return Topic::scripting;
    case Kind::screen:
        return Topic::screen;
    case Kind::log:
        return Topic::log;
    default:
        return Topic::system;
    }
}

RecordWords RecordTeller::wordsOf(const Record& record) {
    switch (record.kind) {
    case Kind::anchor:
        return {anchorText(record)};
    case Kind::log:
        return {"log " + printed(asText(record.payload))};
    case Kind::fact:
        return {"fact " + printed(asText(record.payload))};
    case Kind::datagramIn:
        return datagram(record, "→", clientWords);
    case Kind::datagramOut:
        return datagram(record, "←", receiverWords);
    case Kind::socket:
        return {socketText(record)};
    case Kind::midiIn:
        return midi(record, Direction::fromHost, record.payload);
    case Kind::midiOut:
        return record.payload.size() < sizeof(ResultHead) ? RecordWords{"MIDI"}
                                                          : midi(record, Direction::toHost, behind<ResultHead>(record));
    case Kind::midiPort:
        return {portText(record)};
    case Kind::stream:
        return {"connection " + std::to_string(record.channel) + " " + streamText(record)};
    case Kind::streamIn:
        return {stream(record, "→")};
    case Kind::streamOut:
        return {stream(record, "←")};
    case Kind::screen:
        return {"screen " + screenText(record)};
    case Kind::announced:
        return {record.payload.empty() ? "not announced" : "announced as " + printed(asText(record.payload))};
    }
    return {"kind " + std::to_string(static_cast<int>(record.kind)) + ": " + std::to_string(record.payload.size()) +
            " bytes"};
}

RecordWords RecordTeller::midi(const Record& record, Direction direction, ByteView packet) {
    RecordWords all{"surface-" + std::to_string(record.channel + 1) + (direction == Direction::fromHost ? " →" : " ←")};
    const std::vector<HUIWord> words = hui.read(record.channel, direction, packet);
    if (words.empty()) return {}; // the first half of a message; the other tells it
    for (const HUIWord& word : words) {
        all.text += (&word == &words.front() ? " " : ", ") + word.text;
        if (word.strip) all.strips.push_back(*word.strip);
    }
    if (direction == Direction::toHost)
        if (const auto head = headOf<ResultHead>(record); head->result != 0)
            all.text += " failed: status " + std::to_string(head->result);
    return all;
}

std::string hostText(const NumericAddress& address) {
    const auto& host = address.host;
    constexpr std::array<std::uint8_t, 12> mapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
    std::string text;
    if (std::equal(mapped.begin(), mapped.end(), host.begin())) {
        for (std::size_t i = 12; i < host.size(); ++i)
            text += (i == 12 ? "" : ".") + std::to_string(host[i]);
        return text;
    }
    for (std::size_t i = 0; i < host.size(); i += 2) {
        std::array<char, 8> group{};
        std::snprintf(group.data(), group.size(), "%x", static_cast<unsigned>(host[i] << 8 | host[i + 1]));
        text += (i == 0 ? "" : ":") + std::string(group.data());
    }
    return text;
}

std::string addressText(const NumericAddress& address) {
    const std::string host = hostText(address);
    return (host.contains(':') ? "[" + host + "]" : host) + ":" + std::to_string(address.port);
}

} // namespace lumbrine::blackbox
