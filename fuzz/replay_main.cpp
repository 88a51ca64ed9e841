// The main function of the replay tests, which need no libFuzzer: it runs the fuzzer on each file of the folder named
// on the command line. It prints each file's name first, so that after a crash the last name is the input that crashed.
#include "base/bytes.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

lumbrine::Bytes contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: " << arguments[0] << " FOLDER\n";
        return 2;
    }
    const auto files = filesOf(arguments[1]);
    for (const auto& path : files) {
        std::cout << path.filename().string() << std::endl;
        const lumbrine::Bytes input = contentOf(path);
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    return files.empty() ? 1 : 0; // an empty folder is an error: nothing was tested
}
