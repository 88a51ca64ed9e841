// What the client is told at the end of a scan.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class OwnedScanTest : public OwnedModelTest {};

// A strip may show another track of the name that passed by last.
TEST_F(OwnedScanTest, TellsTheNamesOfTheStripsAtItsEnd) {
    bench.surfaceA.pingEverySecond();
    BankingHost host(bench, numbers(20));
    host.show();
    bench.run(1500ms);
    sendNothing();
    bench.parts().calibration.calibrateBanks(true);
    const PublishedState& published = bench.state().published;
    ASSERT_TRUE(published.calibrating());
    while (published.calibrating()) {
        phone->tape.clear();
        sendNothing();
        bench.run(1ms);
    }
    EXPECT_EQ(heard(0x10).size(), 8U);
}

} // namespace
} // namespace lumbrine
