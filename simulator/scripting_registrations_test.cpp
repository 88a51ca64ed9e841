#include "simulator/scripting_registrations.h"

#include <set>

namespace lumbrine {
namespace {

TEST(ScriptingRegistrations, GiveEachApplicationADifferentIdentifier) {
    ScriptingRegistrations registrations(1, false);
    std::set<std::string> identifiers;
    for (int i = 0; i < 100; ++i)
        identifiers.insert(registrations.add("a"));
    EXPECT_EQ(identifiers.size(), 100u);
    for (const std::string& identifier : identifiers)
        EXPECT_TRUE(registrations.knows(identifier, "a"));
    EXPECT_FALSE(registrations.knows("", "a"));
}

TEST(ScriptingRegistrations, AreGoodOnTheirOwnConnection) {
    ScriptingRegistrations registrations(1, false);
    const std::string first = registrations.add("a");
    const std::string second = registrations.add("b");
    EXPECT_TRUE(registrations.knows(first, "a"));
    EXPECT_FALSE(registrations.knows(first, "b"));
    EXPECT_TRUE(registrations.knows(second, "b"));
}

TEST(ScriptingRegistrations, AreGoodOnAnyConnectionWhereThatIsChosen) {
    ScriptingRegistrations registrations(1, true);
    EXPECT_TRUE(registrations.knows(registrations.add("a"), "b"));
}

TEST(ScriptingRegistrations, GiveNoIdentifierTwiceAfterTheyWereCleared) {
    ScriptingRegistrations registrations(1, false);
    const std::string first = registrations.add("a");
    registrations.clear();
    EXPECT_FALSE(registrations.knows(first, "a"));
    EXPECT_NE(registrations.add("a"), first);
}

TEST(ScriptingRegistrations, ForgetTheOldestWhenThereAreHundreds) {
    ScriptingRegistrations registrations(1, false);
    const std::string first = registrations.add("a");
    std::string last;
    for (int i = 0; i < 1000; ++i)
        last = registrations.add("a");
    EXPECT_FALSE(registrations.knows(first, "a"));
    EXPECT_TRUE(registrations.knows(last, "a"));
}

} // namespace
} // namespace lumbrine
