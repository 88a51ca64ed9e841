#include "ptsl/ptsl_envelope.h"

#include "base/utf8.h"
#include "ptsl/proto_reader.h"
#include "ptsl/proto_writer.h"

namespace lumbrine {

namespace {

enum Status : std::uint64_t { queued = 0, pending = 1, inProgress = 2, failed = 4, waitingForUser = 5, badError = 7 };

ByteView bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string textOf(ByteView bytes) {
    return repairedUTF8({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

void appendVarint(Bytes& message, std::uint64_t value) {
    const Bytes bytes = ProtoWriter::varint(value);
    message.insert(message.end(), bytes.begin(), bytes.end());
}

void appendNumber(Bytes& message, std::uint64_t field, std::uint64_t value) {
    appendVarint(message, field * 8 + proto::varintType);
    appendVarint(message, value);
}

void appendBytes(Bytes& message, std::uint64_t field, ByteView bytes) {
    if (bytes.empty()) return;
    appendVarint(message, field * 8 + proto::lengthDelimitedType);
    appendVarint(message, bytes.size());
    message.insert(message.end(), bytes.begin(), bytes.end());
}

std::expected<void, PTSLError> readHeader(Bytes header, const Bilingual& text, ResponseEnvelope& response) {
    ProtoReader reader(std::move(header), text);
    for (;;) {
        const auto field = reader.next();
        if (!field) return std::unexpected(field.error());
        if (!*field) return {};
        if ((*field)->field == 3 && (*field)->wireType == proto::varintType) response.status = (*field)->varint;
    }
}

} // namespace

Bytes requestEnvelope(PTSLCommand command, std::string_view sessionID, std::string_view argumentsJSON,
                      std::uint64_t version) {
    Bytes header;
    appendNumber(header, 2, static_cast<std::uint64_t>(command));
    appendNumber(header, 3, version);
    appendBytes(header, 4, bytesOf(sessionID));
    Bytes request;
    appendBytes(request, 1, header);
    appendBytes(request, 2, bytesOf(argumentsJSON));
    return request;
}

bool ResponseEnvelope::hasFailed() const {
    return status == Status::failed || status == Status::badError;
}

bool ResponseEnvelope::isUnfinished() const {
    const bool mayHaveAResult = status != Status::queued && status != Status::pending && status != Status::inProgress &&
                                status != Status::waitingForUser;
    return !mayHaveAResult && replyJSON.empty();
}

std::expected<ResponseEnvelope, PTSLError> responseEnvelope(Bytes message, const Bilingual& text) {
    ResponseEnvelope response;
    ProtoReader reader(std::move(message), text);
    for (;;) {
        auto next = reader.next();
        if (!next) return std::unexpected(next.error());
        if (!*next) return response;
        ProtoReader::Field& field = **next;
        if (field.wireType != proto::lengthDelimitedType) continue;
        if (field.field == 1) {
            if (const auto read = readHeader(std::move(field.bytes), text, response); !read)
                return std::unexpected(read.error());
        } else if (field.field == 2) {
            response.replyJSON = textOf(field.bytes);
        } else if (field.field == 3) {
            response.errorJSON = textOf(field.bytes);
        }
    }
}

} // namespace lumbrine
