#include "app/standard_output.h"

#include <unistd.h>

#include <string>

namespace lumbrine {

LineOutput standardOutput(Bilingual text) {
    return {STDOUT_FILENO, [text](std::size_t lines) {
                const std::string count = std::to_string(lines);
                return text("⚠ Standard output could not keep up (" + count + " lines)",
                            "⚠ 標準出力が追いつかず " + count + " 行を省略");
            }};
}

} // namespace lumbrine
