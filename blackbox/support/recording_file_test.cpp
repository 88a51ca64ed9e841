#include "blackbox/support/recording_file.h"
#include "blackbox/testing/memory_ring.h"

#include <unistd.h>

#include <fstream>

namespace lumbrine::blackbox {
namespace {

namespace fs = std::filesystem;

struct RecordingFileTest : testing::Test {
    RecordingFileTest() {
        std::string pattern = (fs::temp_directory_path() / "recording-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        for (int i = 0; i < 500; ++i)
            ring.log("line " + std::to_string(i));
    }
    ~RecordingFileTest() override { fs::remove_all(folder); }

    fs::path write(const char* name, ByteView bytes) const {
        std::ofstream stream(folder / name, std::ios::binary);
        stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return folder / name;
    }

    fs::path folder;
    MemoryRing ring;
};

TEST_F(RecordingFileTest, IsTheRingOrACompressedCopy) {
    EXPECT_EQ(loadRecording(write("ring", ring.bytes())), ring.bytes());
    ASSERT_TRUE(saveRecording(folder / "copy", ring.bytes()));
    EXPECT_LT(fs::file_size(folder / "copy"), ring.bytes().size() / 4);
    EXPECT_EQ(fs::status(folder / "copy").permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(loadRecording(folder / "copy"), ring.bytes());
}

TEST_F(RecordingFileTest, IsReadAsFarAsACutCopyHasIt) {
    Bytes noise = ring.bytes();
    std::uint32_t state = 1;
    for (std::size_t i = headerSize + 30'000; i < noise.size(); ++i)
        noise[i] = static_cast<std::uint8_t>((state = state * 1664525 + 1013904223) >> 24);
    ASSERT_TRUE(saveRecording(folder / "copy", noise));
    fs::resize_file(folder / "copy", fs::file_size(folder / "copy") - 10);
    const auto cut = loadRecording(folder / "copy");
    EXPECT_TRUE(!cut || textsOf(*cut).size() == 500);
}

TEST_F(RecordingFileTest, SaysWhatIsWrong) {
    EXPECT_EQ(loadRecording(folder / "absent").error(), "cannot be read");
    EXPECT_EQ(loadRecording(write("text", textBytes("some text"))).error(), "is no recording");
    EXPECT_EQ(loadRecording(write("empty", {})).error(), "is no recording");
    EXPECT_EQ(loadRecording(write("frame", Bytes{0x28, 0xB5, 0x2F, 0xFD, 0xFF, 0xFF})).error(), "is no recording");
    EXPECT_EQ(saveRecording(folder / "absent" / "copy", ring.bytes()).error(), "cannot be written");
}

} // namespace
} // namespace lumbrine::blackbox
