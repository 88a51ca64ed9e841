#include "blackbox/support/redaction.h"

#include "blackbox/payload.h"
#include "blackbox/ring_reader.h"
#include "blackbox/support/pseudonyms.h"
#include "seal/seal_trailer.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <functional>
#include <set>
#include <string>

namespace lumbrine::blackbox {

namespace {

using MutableBytes = std::span<std::uint8_t>;

constexpr std::array<std::uint8_t, 7> displayBegin{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10};
constexpr std::size_t displayText = displayBegin.size() + 1; // behind the zone
constexpr std::size_t displayLength = 4;
constexpr std::size_t rowNameLength = 2 + 14; // in a TrackRow: where the length of the name stands

// The texts of a payload that tell something, as places in it.
struct Texts {
    std::vector<MutableBytes> names;
    std::vector<MutableBytes> comments;
};

void findInDatagram(MutableBytes datagram, Texts& texts) {
    const std::size_t size = seal::messageOf(datagram).size();
    const MutableBytes message = datagram.first(size);
    if (size < 3 || message[0] != 1) return;
    if (message[1] == 0x10 || message[1] == 0x18) texts.names.push_back(message.subspan(3)); // TrackName, FullName
    if (message[1] != 0x1B || size <= rowNameLength) return;                                 // TrackRow
    const std::size_t name = std::min<std::size_t>(message[rowNameLength], size - rowNameLength - 1);
    texts.names.push_back(message.subspan(rowNameLength + 1, name));
    if (const std::size_t comment = rowNameLength + 1 + name + 1; comment < size)
        texts.comments.push_back(message.subspan(comment));
}

void findOnDisplays(MutableBytes packet, Texts& texts) {
    while (packet.size() >= displayText + displayLength) {
        if (std::equal(displayBegin.begin(), displayBegin.end(), packet.begin()))
            texts.names.push_back(packet.subspan(displayText, displayLength));
        packet = packet.subspan(1);
    }
}

bool startsWith(MutableBytes bytes, std::string_view text) {
    return asText(bytes).starts_with(text);
}

Texts textsOf(Kind kind, MutableBytes payload) {
    Texts texts;
    const bool isDatagram = kind == Kind::datagramOut && payload.size() >= sizeof(DatagramHead);
    if (isDatagram) findInDatagram(payload.subspan(sizeof(DatagramHead)), texts);
    if (kind == Kind::midiIn) findOnDisplays(payload, texts);
    if (kind == Kind::announced) texts.names.push_back(payload);
    if (kind == Kind::fact && startsWith(payload, "computer="))
        texts.names.push_back(payload.subspan(std::string_view("computer=").size()));
    return texts;
}

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
    return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

bool isPartOfAWord(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || (static_cast<unsigned char>(c) & 0x80) != 0;
}

class Redaction {
public:
    Redaction(ByteView ring, std::uint64_t seed) : bytes(ring.begin(), ring.end()), pseudonyms(seed) {}

    Bytes run() {
        const auto reading = readRing(bytes);
        Bytes result(bytes.size());
        if (!reading) return {};
        std::copy_n(bytes.begin(), headerSize, result.begin());
        for (const Record& record : reading->records)
            collect(record);
        for (const Record& record : reading->records)
            put(record, reading->header, result);
        return result;
    }

private:
    MutableBytes payloadOf(const Record& record) {
        return MutableBytes(bytes).subspan(static_cast<std::size_t>(record.payload.data() - bytes.data()),
                                           record.payload.size());
    }

    void collect(const Record& record) {
        for (const MutableBytes name : textsOf(record.kind, payloadOf(record)).names)
            if (const std::string_view text = withoutBlanks(asText(name)); text.size() > 1) names.emplace(text);
    }

    // The record with its new payload and sum, at its place.
    void put(const Record& record, const RingHeader& header, Bytes& result) {
        const MutableBytes payload = payloadOf(record);
        change(record.kind, payload);
        const auto offset = static_cast<std::size_t>(payload.data() - bytes.data()) - recordHeaderSize;
        const std::size_t size = paddedSize(payload.size());
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), size,
                    result.begin() + static_cast<std::ptrdiff_t>(offset));
        Checksum sum(header.salt);
        std::uint64_t word = 0;
        for (std::size_t i = wordSize; i < size; i += wordSize) {
            std::memcpy(&word, result.data() + offset + i, wordSize);
            sum.add(word);
        }
        word = sum.value();
        std::memcpy(result.data() + offset, &word, wordSize);
    }

    void change(Kind kind, MutableBytes payload) {
        const Texts texts = textsOf(kind, payload);
        for (const MutableBytes name : texts.names)
            rename(name);
        for (const MutableBytes comment : texts.comments)
            std::ranges::fill(comment, ' ');
        switch (kind) {
        case Kind::datagramIn:
        case Kind::datagramOut:
            changeAddress(payload);
            clearSeal(payload);
            break;
        case Kind::streamIn:
        case Kind::streamOut:
            std::ranges::fill(payload, 0);
            break;
        case Kind::screen:
            if (payload.size() > sizeof(ScreenHead)) blankValues(payload.subspan(sizeof(ScreenHead)));
            break;
        case Kind::fact:
            if (startsWith(payload, "address=")) clearAddresses(payload);
            break;
        case Kind::log:
            renameInside(payload);
            clearAddresses(payload);
            break;
        default:
            break;
        }
    }

    // The blanks around a name are padding: the name is the same without them.
    void rename(MutableBytes place) const {
        const std::string_view text = asText(place);
        const std::string_view name = withoutBlanks(text);
        const std::string other = pseudonyms.of(name);
        std::ranges::copy(other, place.begin() + (name.data() - text.data()));
    }

    // The longest names first, since one may be a part of another.
    void renameInside(MutableBytes line) const {
        for (std::size_t at = 0; at < line.size();) {
            const std::string_view rest = asText(line).substr(at);
            const bool isBegin = at == 0 || !isPartOfAWord(static_cast<char>(line[at - 1])) || !isPartOfAWord(rest[0]);
            std::size_t longest = 0;
            for (std::size_t size = std::min<std::size_t>(rest.size(), 48); isBegin && size > 1 && longest == 0;
                 --size) {
                const bool isEnd = size == rest.size() || !isPartOfAWord(rest[size]) || !isPartOfAWord(rest[size - 1]);
                if (isEnd && names.contains(rest.substr(0, size))) longest = size;
            }
            if (longest > 0) rename(line.subspan(at, longest));
            at += std::max<std::size_t>(longest, 1);
        }
    }

    void changeAddress(MutableBytes payload) const {
        if (payload.size() < sizeof(DatagramHead)) return;
        const MutableBytes host = payload.first(std::tuple_size_v<decltype(NumericAddress::host)>);
        const std::uint64_t number = pseudonyms.numberOf(asText(host));
        constexpr std::size_t kept = 12; // the beginning, which tells IPv4 from IPv6
        std::memcpy(host.data() + kept, &number, host.size() - kept);
        if (host[10] == 0xFF && host[11] == 0xFF)
            host[kept] = 10;
        else
            std::memcpy(host.data() + 2, &number, sizeof number);
    }

    // A person with the key could tell from a seal whether a guessed text is the true one.
    static void clearSeal(MutableBytes payload) {
        if (payload.size() < sizeof(DatagramHead)) return;
        const MutableBytes datagram = payload.subspan(sizeof(DatagramHead));
        if (seal::messageOf(datagram).size() < datagram.size())
            std::ranges::fill(datagram.last(std::tuple_size_v<seal::Seal>), 0);
    }

    // What an attribute of the screen says, but not its name.
    static void blankValues(MutableBytes text) {
        for (std::size_t at = 0; at < text.size();) {
            const std::string_view rest = asText(text).substr(at);
            const std::size_t end = std::min(rest.find_first_of("= "), rest.size());
            const bool isName = rest.starts_with("AX") && (at == 0 || text[at - 1] == ' ');
            if (isName) {
                at += end;
            } else {
                if (isPartOfAWord(static_cast<char>(text[at]))) text[at] = 'x';
                ++at;
            }
        }
    }

    // Every number with dots in it, as an IPv4 address has, and whatever looks like one of IPv6.
    static void clearAddresses(MutableBytes text) {
        const auto isIn = [](char c) {
            return std::isxdigit(static_cast<unsigned char>(c)) != 0 || c == '.' || c == ':';
        };
        for (std::size_t at = 0; at < text.size();) {
            const std::string_view rest = asText(text).substr(at);
            const auto size = static_cast<std::size_t>(std::ranges::find_if_not(rest, isIn) - rest.begin());
            const std::string_view word = rest.substr(0, size);
            if (std::ranges::count(word, '.') >= 3 || std::ranges::count(word, ':') >= 2)
                for (std::size_t i = at; i < at + size; ++i)
                    if (std::isxdigit(text[i]) != 0) text[i] = '0';
            at += std::max<std::size_t>(size, 1);
        }
    }

    Bytes bytes;
    const Pseudonyms pseudonyms;
    std::set<std::string, std::less<>> names;
};

} // namespace

Bytes redacted(ByteView ring) {
    // All bytes of the original decide, so nobody who has the copy alone can tell which name became which.
    Checksum seed(ring.size());
    std::uint64_t word = 0;
    for (std::size_t i = 0; i + wordSize <= ring.size(); i += wordSize) {
        std::memcpy(&word, ring.data() + i, wordSize);
        seed.add(word);
    }
    return Redaction(ring, seed.value()).run();
}

} // namespace lumbrine::blackbox
