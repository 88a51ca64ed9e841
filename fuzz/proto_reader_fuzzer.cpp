// The input is read as a protocol-buffer message, field by field.
#include "fuzz/require.h"
#include "ptsl/proto_reader.h"
#include "ptsl/proto_writer.h"

#include <cstdlib>

namespace {

using namespace lumbrine;

void check(const ProtoReader::Field& field, std::size_t size) {
    require(field.field >= 0 && field.bytes.size() < size);
    require(field.wireType == 0 || field.wireType == 1 || field.wireType == 2 || field.wireType == 5);
    require(field.wireType == proto::lengthDelimitedType || field.bytes.empty());
    require(field.wireType == proto::varintType || field.varint == 0);
    require(ProtoReader(ProtoWriter::varint(field.varint), Bilingual(false)).varint() == field.varint);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ProtoReader reader(Bytes(data, data + size), Bilingual(false));
    for (std::size_t count = 0; count <= size; ++count) { // a field is at least one byte long, so this ends
        const auto next = reader.next();
        if (!next) {
            require(next.error().kind == PTSLError::Case::malformedResponse && !next.error().detail.empty());
            return 0;
        }
        if (!*next) return 0;
        check(**next, size);
    }
    std::abort();
}
