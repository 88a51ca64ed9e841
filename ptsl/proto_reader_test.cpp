#include "ptsl/proto_reader.h"
#include "ptsl/proto_writer.h"
#include "ptsl/testing/languages.h"

#include <limits>

namespace lumbrine {
namespace {

using Field = ProtoReader::Field;

ProtoReader reader(Bytes message) {
    return {std::move(message), english};
}

// The fields of a valid message.
std::vector<Field> fieldsOf(const Bytes& message) {
    ProtoReader all = reader(message);
    std::vector<Field> fields;
    for (;;) {
        const auto next = all.next();
        if (!next) {
            ADD_FAILURE() << next.error().detail;
            return fields;
        }
        if (!*next) return fields;
        fields.push_back(**next);
    }
}

// The error texts when the first field cannot be read, in both languages.
std::pair<std::string, std::string> firstFieldFailure(const Bytes& message) {
    std::vector<std::string> details;
    for (const Bilingual& text : {english, japanese}) {
        const auto next = ProtoReader(message, text).next();
        details.push_back(next ? "no failure" : next.error().detail);
        if (!next) {
            EXPECT_EQ(next.error().kind, PTSLError::Case::malformedResponse);
        }
    }
    return {details[0], details[1]};
}

using Texts = std::pair<std::string, std::string>;

TEST(ProtoReader, FindsNothingInAnEmptyMessage) {
    const auto next = reader({}).next();
    ASSERT_TRUE(next);
    EXPECT_FALSE(*next);
}

TEST(ProtoReader, ReadsEachFieldAndThenNothing) {
    EXPECT_EQ(fieldsOf({0x18, 0x05,                // field 3: 5
                        0x0A, 0x03, 'a', 'b', 'c', // field 1: three bytes
                        0x10, 0xAC, 0x02}),        // field 2: 300
              (std::vector<Field>{{3, 0, {}, 5}, {1, 2, {'a', 'b', 'c'}, 0}, {2, 0, {}, 300}}));
}

TEST(ProtoReader, ReadsWhatTheWriterWrites) {
    for (int bit = 0; bit < 64; ++bit)
        for (const std::uint64_t value : {std::uint64_t{1} << bit, (std::uint64_t{1} << bit) - 1})
            EXPECT_EQ(reader(ProtoWriter::varint(value)).varint(), value);
    const std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(reader(ProtoWriter::varint(largest)).varint(), largest);
}

TEST(ProtoReader, TakesTheLowestBitOnlyOfATenthByte) {
    EXPECT_EQ(reader({0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x7F}).varint(), std::uint64_t{1} << 63);
}

TEST(ProtoReader, LeavesThePositionAfterAVarint) {
    ProtoReader numbers = reader({0x80, 0x01, 0x02});
    EXPECT_EQ(numbers.varint(), 128u);
    EXPECT_EQ(numbers.varint(), 2u);
}

TEST(ProtoReader, FailsWhenTheMessageEndsInsideAVarint) {
    const Texts truncated{"varint truncated", "varint が途中で切れた"};
    EXPECT_EQ(firstFieldFailure(Bytes(9, 0x80)), truncated);
    EXPECT_EQ(firstFieldFailure({0x80}), truncated);
    EXPECT_EQ(firstFieldFailure({0x08}), truncated);             // no value
    EXPECT_EQ(firstFieldFailure({0x08, 0xFF}), truncated);       // half a value
    EXPECT_EQ(firstFieldFailure({0x0A}), truncated);             // no length
    EXPECT_EQ(firstFieldFailure({0x0A, 0x80, 0x80}), truncated); // half a length
}

TEST(ProtoReader, FailsOnAVarintOfMoreThanTenBytes) {
    const Texts tooLong{"varint too long", "varint が長すぎる"};
    EXPECT_EQ(firstFieldFailure(Bytes(10, 0x80)), tooLong);
    EXPECT_EQ(firstFieldFailure(Bytes(11, 0xFF)), tooLong);
    Bytes value{0x08};
    value.insert(value.end(), 10, 0x80);
    EXPECT_EQ(firstFieldFailure(value), tooLong);
}

TEST(ProtoReader, ReadsABytesFieldOfNoLength) {
    EXPECT_EQ(fieldsOf({0x12, 0x00, 0x08, 0x01}), (std::vector<Field>{{2, 2, {}, 0}, {1, 0, {}, 1}}));
}

TEST(ProtoReader, FailsOnABytesFieldLongerThanTheMessage) {
    const Texts exceeds{"length exceeds available bytes", "長さが実体を超えている"};
    EXPECT_EQ(firstFieldFailure({0x0A, 0x02, 'a'}), exceeds);
    EXPECT_EQ(firstFieldFailure({0x0A, 0x01}), exceeds);
    for (const std::uint64_t length : {std::uint64_t{1} << 63, std::numeric_limits<std::uint64_t>::max(),
                                       (std::uint64_t{1} << 63) - 1, std::uint64_t{0xFFFFFFFF}}) {
        Bytes message{0x0A};
        const Bytes written = ProtoWriter::varint(length);
        message.insert(message.end(), written.begin(), written.end());
        EXPECT_EQ(firstFieldFailure(message), exceeds) << length;
    }
}

TEST(ProtoReader, SkipsTheValuesOfFixedWidth) {
    EXPECT_EQ(fieldsOf({0x09, 1, 2, 3, 4, 5, 6, 7, 8, // field 1, 64 bits
                        0x15, 1, 2, 3, 4,             // field 2, 32 bits
                        0x18, 0x07}),
              (std::vector<Field>{{1, 1, {}, 0}, {2, 5, {}, 0}, {3, 0, {}, 7}}));
}

TEST(ProtoReader, SkipsAValueOfFixedWidthThatEndsTheMessage) {
    EXPECT_EQ(fieldsOf({0x09, 1, 2, 3, 4, 5, 6, 7, 8}), (std::vector<Field>{{1, 1, {}, 0}}));
    EXPECT_EQ(fieldsOf({0x0D, 1, 2, 3, 4}), (std::vector<Field>{{1, 5, {}, 0}}));
}

TEST(ProtoReader, FailsOnValuesOfFixedWidthThatAreCutOff) {
    EXPECT_EQ(firstFieldFailure({0x09, 1, 2, 3, 4, 5, 6, 7}), Texts("fixed64 truncated", "fixed64 が切れた"));
    EXPECT_EQ(firstFieldFailure({0x09}), Texts("fixed64 truncated", "fixed64 が切れた"));
    EXPECT_EQ(firstFieldFailure({0x0D, 1, 2, 3}), Texts("fixed32 truncated", "fixed32 が切れた"));
    EXPECT_EQ(firstFieldFailure({0x0D}), Texts("fixed32 truncated", "fixed32 が切れた"));
}

TEST(ProtoReader, FailsOnGroupsAndUnknownWireTypes) {
    EXPECT_EQ(firstFieldFailure({0x0B}), Texts("unknown wire type 3", "未知の wire type 3"));
    EXPECT_EQ(firstFieldFailure({0x0C}), Texts("unknown wire type 4", "未知の wire type 4"));
    EXPECT_EQ(firstFieldFailure({0x0E}), Texts("unknown wire type 6", "未知の wire type 6"));
    EXPECT_EQ(firstFieldFailure({0x0F}), Texts("unknown wire type 7", "未知の wire type 7"));
}

TEST(ProtoReader, ReadsFieldNumbersOfMoreThanFourBits) {
    EXPECT_EQ(fieldsOf({0x80, 0x01, 0x07}), (std::vector<Field>{{16, 0, {}, 7}}));
    EXPECT_EQ(fieldsOf({0xFA, 0xFF, 0xFF, 0xFF, 0x0F, 0x01, 'x'}), (std::vector<Field>{{536'870'911, 2, {'x'}, 0}}));
    EXPECT_EQ(fieldsOf({0xF8, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01, 0x00}),
              (std::vector<Field>{{(std::int64_t{1} << 61) - 1, 0, {}, 0}}));
}

} // namespace
} // namespace lumbrine
