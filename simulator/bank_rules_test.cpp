#include "simulator/bank_rules.h"

namespace lumbrine {
namespace {

SimulatorOptions filling() {
    SimulatorOptions options;
    options.endOfSession = EndOfSession::fill;
    return options;
}

SimulatorOptions blanking() {
    SimulatorOptions options;
    options.endOfSession = EndOfSession::blank;
    return options;
}

TEST(BankRules, EndWithAFullBankOrWithBlankStrips) {
    EXPECT_EQ(lastBankOffset(20, 8, EndOfSession::fill), 12);
    EXPECT_EQ(lastBankOffset(20, 8, EndOfSession::blank), 16);
    EXPECT_EQ(lastBankOffset(16, 8, EndOfSession::fill), 8);
    EXPECT_EQ(lastBankOffset(16, 8, EndOfSession::blank), 8);
    EXPECT_EQ(lastBankOffset(20, 16, EndOfSession::fill), 4);
    EXPECT_EQ(lastBankOffset(20, 16, EndOfSession::blank), 16);
    for (const int tracks : {0, 1, 8}) {
        EXPECT_EQ(lastBankOffset(tracks, 8, EndOfSession::fill), 0);
        EXPECT_EQ(lastBankOffset(tracks, 8, EndOfSession::blank), 0);
    }
}

TEST(BankRules, BankByTheWidthAndChannelByOne) {
    const auto options = filling();
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 0, 40, 8, options), 8);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 3, 40, 8, options), 11);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 0, 40, 16, options), 16);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankLeft, 16, 40, 8, options), 8);
    EXPECT_EQ(bankOffsetAfter(BankButton::channelRight, 8, 40, 8, options), 9);
    EXPECT_EQ(bankOffsetAfter(BankButton::channelLeft, 8, 40, 8, options), 7);
}

TEST(BankRules, StayWithinTheSession) {
    EXPECT_EQ(bankOffsetAfter(BankButton::bankLeft, 0, 20, 8, filling()), 0);
    EXPECT_EQ(bankOffsetAfter(BankButton::channelLeft, 0, 20, 8, filling()), 0);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 8, 20, 8, filling()), 12);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 12, 20, 8, filling()), 12);
    EXPECT_EQ(bankOffsetAfter(BankButton::channelRight, 12, 20, 8, filling()), 12);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 8, 20, 8, blanking()), 16);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 16, 20, 8, blanking()), 16);
    EXPECT_EQ(bankOffsetAfter(BankButton::channelRight, 15, 20, 8, blanking()), 16);
    EXPECT_EQ(bankOffsetAfter(BankButton::channelRight, 16, 20, 8, blanking()), 16);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 0, 0, 8, filling()), 0);
}

TEST(BankRules, AlignToTheLeftOnlyWhereTheOptionSaysSo) {
    SimulatorOptions options = filling();
    options.bankLeftAligns = true;
    EXPECT_EQ(bankOffsetAfter(BankButton::bankLeft, 13, 40, 8, options), 8);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankLeft, 8, 40, 8, options), 0);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankLeft, 5, 40, 8, options), 0);
    options.bankLeftAligns = false;
    EXPECT_EQ(bankOffsetAfter(BankButton::bankLeft, 13, 40, 8, options), 5);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankLeft, 5, 40, 8, options), 0);
}

TEST(BankRules, AlignToTheRightOnlyWhereTheOptionSaysSo) {
    SimulatorOptions options = filling();
    options.bankRightAligns = true;
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 3, 40, 8, options), 8);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 8, 40, 8, options), 16);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 27, 40, 8, options), 32);
    EXPECT_EQ(bankOffsetAfter(BankButton::bankRight, 25, 36, 8, options), 28); // the last one is full
}

} // namespace
} // namespace lumbrine
