// The checker of hands sees what is left down and who is lifted.
#include "tests/simulation/hands_checker.h"
#include "tests/simulation/testing/wire_actions.h"

#include <algorithm>
#include <iterator>

namespace lumbrine::simulation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Hands : public testing::Test {
protected:
    static ReceivedDatagram datagram(const std::string& sender, double time, Bytes bytes) {
        return {at(time), sender, std::move(bytes)};
    }
    static ReceivedDatagram touch(const std::string& sender, double time) {
        return datagram(sender, time, {0x01, 0x02, 0x03});
    }
    static ReceivedDatagram release(const std::string& sender, double time) {
        return datagram(sender, time, {0x01, 0x03, 0x03});
    }
    static ReceivedDatagram takeOver(const std::string& sender, double time) {
        return datagram(sender, time, {0x01, 0x25});
    }
    static ReceivedDatagram hello(const std::string& sender, double time, std::uint8_t token) {
        return datagram(sender, time, {0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, token});
    }

    // A session of ten seconds in which that was received and sent.
    std::vector<std::string> check(const std::vector<ReceivedDatagram>& received, std::vector<WireAction> wire) {
        HandsViolations found = checkHands({.wires = {std::move(wire)},
                                            .acceptance = acceptedOf(received),
                                            .runs = runs,
                                            .programEnd = at(10),
                                            .end = at(10.2)});
        std::ranges::move(found.ofAuto, std::back_inserter(found.ofClients));
        return std::move(found.ofClients);
    }

    std::vector<JobRun> runs;
};

TEST_F(Hands, GoWithTheirRelease) {
    EXPECT_THAT(check({touch("a", 1), release("a", 2)}, {edge(1, 3, 0, 1), edge(2.1, 3, 0, 0)}), IsEmpty());
    EXPECT_THAT(check({touch("a", 1), release("a", 2)}, {edge(1, 3, 0, 1), edge(2.11, 3, 0, 0)}),
                ElementsAre(HasSubstr("after its release")));
    EXPECT_THAT(check({touch("a", 1), release("a", 2)}, {edge(1, 3, 0, 1)}),
                ElementsAre(HasSubstr("after its release")));
}

TEST_F(Hands, OfAnotherOwnerAreGoneAtOnce) {
    const std::vector<ReceivedDatagram> received{touch("a", 1), takeOver("b", 2)};
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2.1, 3, 0, 0)}), IsEmpty());
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2.4, 3, 0, 0)}), ElementsAre(HasSubstr("after another owner")));
}

TEST_F(Hands, OfTheSameDeviceStayWhenItsAddressChanges) {
    const std::vector<ReceivedDatagram> received{hello("a", 0.5, 7), touch("a", 1), hello("c", 2, 7), release("c", 3)};
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(3, 3, 0, 0)}), IsEmpty());
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2.1, 3, 0, 0)}), ElementsAre(HasSubstr("lifted by nobody")));
}

TEST_F(Hands, OfTheNewOwnerStayWhenTheOldOnesAreLifted) {
    const std::vector<ReceivedDatagram> received{touch("a", 1), takeOver("b", 2), touch("b", 2.05), release("b", 4)};
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2.05, 3, 0, 1), edge(4, 3, 0, 0)}), IsEmpty());
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2.05, 3, 0, 1), edge(2.09, 3, 0, 0)}),
                ElementsAre(HasSubstr("by owner 2, is lifted by nobody")));
}

TEST_F(Hands, BetweenTwoChangesWithinOneTickAreGone) {
    const std::vector<ReceivedDatagram> received{touch("a", 1), takeOver("b", 2), touch("b", 2.05), takeOver("a", 2.1),
                                                 release("a", 5)};
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2.05, 3, 0, 1), edge(2.2, 3, 0, 0)}), IsEmpty());
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2.05, 3, 0, 1), edge(5, 3, 0, 0)}),
                ElementsAre(HasSubstr("by owner 2, is still down 0.1 s after another owner")));
}

TEST_F(Hands, OfASilentClientAreForgottenAfterFiveSecondsAndNotBefore) {
    const std::vector<ReceivedDatagram> received{touch("a", 1), datagram("a", 2, {0x01, 0x07, 0x00, 0x00})};
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(7, 3, 0, 0)}), IsEmpty());
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(7.4, 3, 0, 0)}), IsEmpty());
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(7.51, 3, 0, 0)}), ElementsAre(HasSubstr("client's silence")));
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(6.9, 3, 0, 0)}), ElementsAre(HasSubstr("lifted by nobody")));
}

TEST_F(Hands, OfASilentClientThatRepeatsTouchesAreForgottenAfterOneAndAHalfSecondsAndNotBefore) {
    const std::vector<ReceivedDatagram> received{touch("a", 1), touch("a", 1.5)};
    const std::vector<WireAction> touched{edge(1, 3, 0, 1), edge(1.5, 3, 0, 1)};
    const auto releasedAt = [&](double time) {
        std::vector<WireAction> wire = touched;
        wire.push_back(edge(time, 3, 0, 0));
        return wire;
    };
    EXPECT_THAT(check(received, releasedAt(3)), IsEmpty());
    EXPECT_THAT(check(received, releasedAt(2.999)), ElementsAre(HasSubstr("lifted by nobody")));
    EXPECT_THAT(check(received, releasedAt(3.2)), ElementsAre(HasSubstr("after its client's silence")));
}

TEST_F(Hands, AreGoneBeforeTheBanksMove) {
    const std::vector<ReceivedDatagram> received{touch("a", 1), datagram("a", 3, {0x01, 0x07, 0x00, 0x00}),
                                                 datagram("a", 6, {0x01, 0x07, 0x00, 0x00}), release("a", 9)};
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2, 3, 0, 0), edge(2, 10, 3, 1), edge(2.03, 10, 3, 0)}),
                IsEmpty());
    EXPECT_THAT(check(received, {edge(1, 3, 0, 1), edge(2, 10, 3, 1), edge(2.03, 10, 3, 0), edge(9, 3, 0, 0)}),
                ElementsAre(HasSubstr("down when the banks are moved")));
    EXPECT_THAT(check({}, {edge(1, 3, 4, 1), edge(1.1, 10, 3, 1), edge(1.13, 10, 3, 0), edge(1.15, 3, 4, 0)}),
                ElementsAre(HasSubstr("AUTO of strip 3")));
}

TEST_F(Hands, AreGoneAtTheEndOfTheProgram) {
    const std::vector<ReceivedDatagram> received{touch("a", 9), datagram("a", 9.99, {0x01, 0x04, 0x05})};
    EXPECT_THAT(check(received, {edge(9, 3, 0, 1), edge(9.99, 5, 2, 1), edge(10, 3, 0, 0), edge(10, 5, 2, 0)}),
                IsEmpty());
    EXPECT_THAT(check(received, {edge(9, 3, 0, 1), edge(9.99, 5, 2, 1)}),
                ElementsAre(HasSubstr("the end of the program"), HasSubstr("the end of the program")));
}

TEST_F(Hands, OfAModeThatSomebodyAskedForGoWithItsOwner) {
    const std::vector<ReceivedDatagram> received{datagram("a", 1, {0x01, 0x0F, 0x03, 0x02}), takeOver("b", 1.07)};
    const std::vector<WireAction> letGo{edge(1, 3, 4, 1), edge(1.05, 24, 2, 1), edge(1.1, 24, 2, 0),
                                        edge(1.1, 3, 4, 0)};
    EXPECT_THAT(check(received, letGo), IsEmpty());
    const std::vector<WireAction> carriedOn{edge(1, 3, 4, 1), edge(1.05, 24, 2, 1), edge(1.11, 24, 2, 0),
                                            edge(1.26, 3, 4, 0)};
    EXPECT_THAT(check(received, carriedOn), ElementsAre(HasSubstr("AUTO of strip 3")));
}

} // namespace
} // namespace lumbrine::simulation
