// The rooms of the model know each other in one direction: state <- mirror <- hands, tracks <- bank <- reactions. What
// stands in model/ itself puts the parts of all rooms together.
#include "tests/tidy/source_tree.h"

#include <algorithm>
#include <map>

namespace lumbrine::tidy {
namespace {

using Rooms = std::vector<std::string>;

// What a room may include besides itself.
const std::map<std::string, Rooms>& roomsBelow() {
    static const std::map<std::string, Rooms> table{
        {"model/state", {}},
        {"model/mirror", {"model/state"}},
        {"model/hands", {"model/state", "model/mirror"}},
        {"model/tracks", {"model/state", "model/mirror"}},
        {"model/bank", {"model/state", "model/mirror", "model/hands", "model/tracks"}},
        {"model/reactions", {"model/state", "model/mirror", "model/hands", "model/tracks", "model/bank"}},
    };
    return table;
}

// Empty for a path outside the model, and for what stands in model/ itself.
std::string roomOf(const std::string& path) {
    if (!isBelow(path, "model")) return {};
    const std::size_t end = path.find('/', std::string("model/").size());
    return end == std::string::npos ? std::string() : path.substr(0, end);
}

// Empty when the include is allowed, else what is wrong with it.
std::string complaint(const std::string& path, const std::string& include) {
    const auto from = roomsBelow().find(roomOf(path));
    if (from == roomsBelow().end() || !isBelow(include, "model") || roomOf(include) == from->first) return {};
    if (std::ranges::find(from->second, roomOf(include)) != from->second.end()) return {};
    return path + " must not include " + include;
}

TEST(ModelRooms, KnowOnlyTheRoomsBelowThem) {
    for (const SourceFile& file : cppFiles()) {
        if (file.isTest()) continue;
        for (const std::string& include : quotedIncludes(file.text))
            EXPECT_EQ(complaint(file.path, include), "");
    }
}

TEST(ModelRooms, AreAllInTheTable) {
    for (const SourceFile& file : cppFiles()) {
        const std::string room = roomOf(file.path);
        EXPECT_TRUE(room.empty() || room == "model/testing" || roomsBelow().contains(room)) << file.path;
    }
}

TEST(ModelRooms, AreCheckedAgainstWrongArrows) {
    EXPECT_NE(complaint("model/hands/pan.cpp", "model/bank/bank_map.h"), "");
    EXPECT_NE(complaint("model/state/jobs.h", "model/mirror/meters.h"), "");
    EXPECT_NE(complaint("model/bank/bank_map.h", "model/receiver_parts.h"), "");
    EXPECT_NE(complaint("model/tracks/scripting_link.cpp", "model/testing/model_bench.h"), "");
    EXPECT_EQ(complaint("model/bank/bank_map.h", "model/state/session.h"), "");
    EXPECT_EQ(complaint("model/bank/bank_map.h", "model/bank/track_window.h"), "");
    EXPECT_EQ(complaint("model/bank/bank_map.h", "base/strip.h"), "");
    EXPECT_EQ(complaint("model/receiver_parts.h", "model/bank/bank_map.h"), "");
    EXPECT_EQ(complaint("app/headless_main.cpp", "model/receiver_model.h"), "");
}

} // namespace
} // namespace lumbrine::tidy
