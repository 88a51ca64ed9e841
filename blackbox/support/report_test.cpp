#include "blackbox/support/report.h"
#include "blackbox/testing/memory_ring.h"

namespace lumbrine::blackbox {
namespace {

// As the receiver tells a client the name of a strip.
void noteName(MemoryRing& ring, const std::string& name) {
    const DatagramHead head{.peer = {}, .result = 0};
    ring.writer.write({1, 1}, Kind::datagramOut, 0, {bytesOf(head), Bytes{1, 0x18, 0}, textBytes(name)});
}

TEST(Report, EndsWithTheDiagnosis) {
    MemoryRing ring;
    ring.log("UDP listening");

    const auto texts = textsOf(reportOf(ring.bytes(), "✓ MIDI\n✗ No phone\n"));

    EXPECT_EQ(texts, (std::vector<std::string>{"UDP listening", "check: ✓ MIDI", "check: ✗ No phone"}));
}

TEST(Report, HasNoNamesAndNoAddresses) {
    MemoryRing ring;
    noteName(ring, "Secret Song");

    const Bytes report = reportOf(ring.bytes(), "✓ Secret Song at 192.168.1.20\n");

    const std::string all(report.begin(), report.end());
    EXPECT_FALSE(all.contains("Secret"));
    EXPECT_FALSE(all.contains("192.168.1.20"));
    EXPECT_TRUE(all.contains("check: ✓ "));
}

TEST(Report, KeepsTheNewestWhereTheRecordingIsFull) {
    MemoryRing ring;
    for (int i = 0; i < 5000; ++i)
        ring.log("a line of the log, number " + std::to_string(i));

    const auto texts = textsOf(reportOf(ring.bytes(), "✓ MIDI\n"));

    EXPECT_EQ(texts.back(), "check: ✓ MIDI");
    EXPECT_EQ(texts.at(texts.size() - 2), "a line of the log, number 4999");
}

TEST(Report, OfSomethingElseIsEmpty) {
    EXPECT_TRUE(reportOf(Bytes(10000), "✓ MIDI\n").empty());
}

} // namespace
} // namespace lumbrine::blackbox
