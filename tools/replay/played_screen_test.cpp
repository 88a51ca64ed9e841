#include "tools/replay/played_screen.h"

namespace lumbrine::blackbox {
namespace {

const std::vector<std::string_view> names{"AXTitle", "AXRows", "AXMain", "AXRow", "AXValue"};

std::size_t sizeOf(const std::optional<AttributeValue>& list) {
    return std::get<std::vector<ElementHandle>>(*list).size();
}

TEST(PlayedScreen, ReadsWhatWasRecorded) {
    const auto values =
        valuesIn("AXTitle=\"Mix: \"Song\" #3\" AXRows=[#5-#9 #12] AXMain=true AXRow=#13 AXValue=-", names);

    EXPECT_EQ(std::get<std::string>(*values[0]), "Mix: \"Song\" #3");
    EXPECT_EQ(sizeOf(values[1]), 6U);
    EXPECT_TRUE(std::get<bool>(*values[2]));
    EXPECT_NE(std::get<ElementHandle>(*values[3]), nullptr);
    EXPECT_FALSE(values[4]);
}

TEST(PlayedScreen, ReadsAnEmptyList) {
    EXPECT_EQ(sizeOf(valuesIn("AXTitle=- AXRows=[]", names).at(1)), 0U);
}

TEST(PlayedScreen, HasNoValuesWhereTheRecordIsCut) {
    const auto values = valuesIn("AXTitle=\"Mi", names);
    ASSERT_EQ(values.size(), names.size());
    for (const auto& value : values)
        EXPECT_FALSE(value);
}

} // namespace
} // namespace lumbrine::blackbox
