#include "platform/virtual/turn.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace lumbrine;
using ::testing::ElementsAre;

TEST(Turns, eachGoesOnWhereItGaveItsTurnAway) {
    std::vector<std::string> notes;
    Turn main;
    Turn other([&] {
        notes.push_back("other begins");
        other.passTo(main);
        notes.push_back("other goes on");
    });

    notes.push_back("main");
    main.passTo(other);
    notes.push_back("main again");
    main.letEnd(other);
    notes.push_back("other has ended");

    EXPECT_THAT(notes, ElementsAre("main", "other begins", "main again", "other goes on", "other has ended"));
}

TEST(Turns, theBodyDoesNotBeginBeforeItsFirstTurn) {
    bool begun = false;
    Turn main;
    Turn other([&] { begun = true; });
    std::this_thread::yield();
    EXPECT_FALSE(begun);
    main.letEnd(other);
    EXPECT_TRUE(begun);
}

TEST(Turns, manyKeepTheirLocals) {
    constexpr int many = 200;
    Turn main;
    std::vector<int> sums(many);
    std::vector<std::unique_ptr<Turn>> others;
    for (int i = 0; i < many; ++i)
        others.push_back(std::make_unique<Turn>([&, i] {
            std::array<int, 1000> own{};
            for (int round = 0; round < 3; ++round) {
                own[static_cast<std::size_t>(round)] = i;
                others[static_cast<std::size_t>(i)]->passTo(main);
            }
            sums[static_cast<std::size_t>(i)] = own[0] + own[1] + own[2];
        }));

    for (int round = 0; round < 3; ++round)
        for (const auto& other : others)
            main.passTo(*other);
    for (const auto& other : others)
        main.letEnd(*other);

    for (int i = 0; i < many; ++i)
        EXPECT_EQ(sums[static_cast<std::size_t>(i)], 3 * i);
}

TEST(Turns, aForeignThreadIsNoneOfThem) {
    Turn main;
    bool foreign = false;
    std::thread([&] { foreign = !main.onItsThread(); }).join();
    EXPECT_TRUE(foreign);
    EXPECT_TRUE(main.onItsThread());
}
