#include "simulator/wire/scripting_envelope.h"

#include "base/utf8.h"

#include <cstdint>
#include <string>

namespace lumbrine::wire {

namespace {

enum class WireType : std::uint8_t { varint = 0, fixed64 = 1, lengthDelimited = 2, fixed32 = 5 };

struct Field {
    std::uint64_t number;
    WireType type;
    std::uint64_t value; // of a varint
    ByteView bytes;      // of a length-delimited field
};

// The fields of a message, one after another.
class Fields {
public:
    explicit Fields(ByteView message) : rest(message) {}

    bool malformed() const { return broken; }

    // Absent at the end, and where the message is malformed.
    std::optional<Field> next() {
        if (rest.empty()) return std::nullopt;
        const auto tag = varint();
        if (!tag || *tag >> 3 == 0) return fail();
        Field field{*tag >> 3, static_cast<WireType>(*tag & 7), 0, {}};
        switch (field.type) {
        case WireType::varint: {
            const auto value = varint();
            if (!value) return fail();
            field.value = *value;
            return field;
        }
        case WireType::lengthDelimited: {
            const auto length = varint();
            return length ? take(field, *length) : fail();
        }
        case WireType::fixed64:
            return take(field, 8);
        case WireType::fixed32:
            return take(field, 4);
        }
        return fail();
    }

private:
    std::optional<Field> fail() {
        broken = true;
        rest = {};
        return std::nullopt;
    }

    std::optional<Field> take(Field field, std::uint64_t length) {
        if (length > rest.size()) return fail();
        field.bytes = rest.first(static_cast<std::size_t>(length));
        rest = rest.subspan(field.bytes.size());
        return field;
    }

    std::optional<std::uint64_t> varint() {
        std::uint64_t value = 0;
        for (int shift = 0; shift < 64 && !rest.empty(); shift += 7) {
            const std::uint8_t byte = rest.front();
            rest = rest.subspan(1);
            value |= std::uint64_t{byte & 0x7FU} << shift;
            if ((byte & 0x80) == 0) return value;
        }
        return std::nullopt;
    }

    ByteView rest;
    bool broken = false;
};

// False when the bytes are no text.
bool read(const Field& field, std::string& text) {
    if (field.type != WireType::lengthDelimited) return true;
    std::string found(field.bytes.begin(), field.bytes.end());
    if (!isUTF8(found)) return false;
    text = std::move(found);
    return true;
}

bool read(const Field& field, std::int32_t& number) {
    if (field.type == WireType::varint) number = static_cast<std::int32_t>(field.value);
    return true;
}

bool readHeaderField(const Field& field, ScriptingRequest& request) {
    switch (field.number) {
    case 1:
        return read(field, request.taskID);
    case 2:
        return read(field, request.command);
    case 3:
        return read(field, request.version);
    case 4:
        return read(field, request.sessionID);
    case 5:
        return read(field, request.versionMinor);
    case 6:
        return read(field, request.versionRevision);
    case 7:
        return read(field, request.versionedHeaderJSON);
    default:
        return true;
    }
}

bool readHeader(const Field& header, ScriptingRequest& request) {
    if (header.type != WireType::lengthDelimited) return true;
    Fields fields(header.bytes);
    while (const auto field = fields.next())
        if (!readHeaderField(*field, request)) return false;
    return !fields.malformed();
}

void appendVarint(Bytes& bytes, std::uint64_t value) {
    for (; value >= 0x80; value >>= 7)
        bytes.push_back(static_cast<std::uint8_t>(value | 0x80));
    bytes.push_back(static_cast<std::uint8_t>(value));
}

void appendTag(Bytes& bytes, std::uint64_t number, WireType type) {
    appendVarint(bytes, number << 3 | static_cast<std::uint64_t>(type));
}

void append(Bytes& bytes, std::uint64_t number, std::int32_t value) {
    if (value == 0) return;
    appendTag(bytes, number, WireType::varint);
    appendVarint(bytes, static_cast<std::uint64_t>(std::int64_t{value}));
}

template <typename Text>
void append(Bytes& bytes, std::uint64_t number, const Text& text) {
    if (text.empty()) return;
    appendTag(bytes, number, WireType::lengthDelimited);
    appendVarint(bytes, text.size());
    bytes.insert(bytes.end(), text.begin(), text.end());
}

} // namespace

std::optional<ScriptingRequest> decodeRequest(ByteView bytes) {
    ScriptingRequest request;
    Fields fields(bytes);
    while (const auto field = fields.next()) {
        const bool known = field->number == 1   ? readHeader(*field, request)
                           : field->number == 2 ? read(*field, request.bodyJSON)
                                                : true;
        if (!known) return std::nullopt;
    }
    if (fields.malformed()) return std::nullopt;
    return request;
}

Bytes encodeReply(const ScriptingReply& reply) {
    Bytes header;
    append(header, 1, reply.taskID);
    append(header, 2, reply.command);
    append(header, 3, static_cast<std::int32_t>(reply.status));
    append(header, 4, reply.progress);
    append(header, 5, reply.version);
    append(header, 6, reply.versionMinor);
    append(header, 7, reply.versionRevision);
    append(header, 8, reply.versionedHeaderJSON);
    Bytes bytes;
    append(bytes, 1, header);
    append(bytes, 2, reply.bodyJSON);
    append(bytes, 3, reply.errorJSON);
    return bytes;
}

} // namespace lumbrine::wire
