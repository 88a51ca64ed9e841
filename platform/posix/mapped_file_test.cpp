#include "platform/posix/mapped_file.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>

namespace lumbrine {
namespace {

namespace fs = std::filesystem;
using Problem = MappedFile::Problem;

constexpr std::size_t size = 65536;

struct MappedFileTest : testing::Test {
    MappedFileTest() {
        std::string pattern = (fs::temp_directory_path() / "mapped-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
    }
    ~MappedFileTest() override { fs::remove_all(folder); }

    std::uint64_t wordInFile(std::size_t index) const {
        std::uint64_t word = 0;
        std::ifstream stream(path(), std::ios::binary);
        stream.seekg(static_cast<std::streamoff>(index * sizeof word));
        stream.read(reinterpret_cast<char*>(&word), sizeof word);
        return word;
    }

    fs::path path() const { return folder / "state" / "lumbrine" / "file"; }

    fs::path folder;
};

TEST_F(MappedFileTest, IsCreatedForThisUserAloneAndFullOfZeros) {
    const auto file = MappedFile::open(path(), size);
    ASSERT_TRUE(file);
    EXPECT_EQ(fs::file_size(path()), size);
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(path().parent_path()).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(std::ranges::all_of((*file)->words(), [](std::uint64_t word) { return word == 0; }));
}

TEST_F(MappedFileTest, HasWhatAProcessStoredThatWasKilled) {
    const pid_t child = ::fork();
    if (child == 0) {
        const auto file = MappedFile::open(path(), size);
        (*file)->words()[5000] = 42;
        ::raise(SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(wordInFile(5000), 42U);
    EXPECT_EQ((*MappedFile::open(path(), size))->words()[5000], 42U);
}

TEST_F(MappedFileTest, IsReplacedByZerosWhenItHadAnotherSize) {
    (*MappedFile::open(path(), size))->words()[3] = 1;
    EXPECT_EQ((*MappedFile::open(path(), 2 * size))->words()[3], 0U);
    EXPECT_EQ(fs::file_size(path()), 2 * size);
}

TEST_F(MappedFileTest, BelongsToOneProgramAtATime) {
    auto first = MappedFile::open(path(), size);
    ASSERT_TRUE(first);
    EXPECT_EQ(MappedFile::open(path(), size).error(), Problem::inUse);
    first->reset();
    EXPECT_TRUE(MappedFile::open(path(), size));
}

TEST_F(MappedFileTest, IsRefusedWhereTheDiskHasNoRoom) {
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    rlimit tight = before;
    tight.rlim_cur = size / 2;
    ::setrlimit(RLIMIT_FSIZE, &tight);
    const auto file = MappedFile::open(path(), size);
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, SIG_DFL);
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error(), Problem::noRoom);
    EXPECT_EQ(fs::file_size(path()), 0U);
}

TEST_F(MappedFileTest, IsRefusedWhereItCannotBeMade) {
    std::ofstream(folder / "state") << "a file where a folder should be";
    EXPECT_EQ(MappedFile::open(path(), size).error(), Problem::notWritten);
    EXPECT_EQ(MappedFile::open("/dev/null", size).error(), Problem::notWritten);
    fs::create_symlink("/dev/null", folder / "link");
    EXPECT_EQ(MappedFile::open(folder / "link", size).error(), Problem::notWritten);
}

TEST_F(MappedFileTest, TakesStoresWithoutHarmWhenItsBytesAreGone) {
    const auto file = MappedFile::open(path(), size);
    ASSERT_TRUE(file);
    EXPECT_FALSE((*file)->isLost());
    fs::resize_file(path(), 0);
    (*file)->words()[size / 16] = 7;
    EXPECT_TRUE((*file)->isLost());
    EXPECT_EQ((*file)->words()[size / 16], 7U);
    (*file)->expectStores(0, size);
    EXPECT_EQ((*file)->words()[size / 16], 7U);
}

TEST_F(MappedFileTest, KeepsItsBytesWhereStoresAreExpectedAndElsewhere) {
    const auto file = MappedFile::open(path(), size);
    ASSERT_TRUE(file);
    const auto words = (*file)->words();
    for (std::size_t i = 0; i < words.size(); ++i)
        words[i] = i;
    (*file)->expectStores(size - 4096, 3 * 4096); // round the end
    for (std::size_t i = 0; i < words.size(); ++i)
        ASSERT_EQ(words[i], i);
    EXPECT_EQ(wordInFile(words.size() - 1), words.size() - 1);
}

} // namespace
} // namespace lumbrine
