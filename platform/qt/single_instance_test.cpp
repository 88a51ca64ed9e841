#include "platform/qt/single_instance.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <array>
#include <atomic>
#include <thread>

namespace lumbrine {
namespace {

class SingleInstanceTest : public testing::Test {
protected:
    SingleInstanceTest() { qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8()); }

    // Does what a second process does, on another thread. Returns how often the first one was asked to show itself.
    int raisedBySecondStart(SingleInstance& first) {
        int raised = 0;
        first.onStartOfAnother([&raised] { ++raised; });
        std::atomic<int> answered{-1};
        std::thread other([&] {
            SingleInstance second(identifier);
            answered = !second.isFirst() && second.handOver() ? 1 : 0;
        });
        while (answered < 0)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        other.join();
        EXPECT_EQ(answered, 1);
        return raised;
    }

    int count = 1;
    std::string name = "test";
    std::array<char*, 2> arguments{name.data(), nullptr};
    QCoreApplication application{count, arguments.data()};
    QTemporaryDir folder;
    const QString identifier = QStringLiteral("com.tarnwick.lumbrine.test");
};

TEST_F(SingleInstanceTest, IsTheFirstWhereThereIsNoOther) {
    EXPECT_TRUE(SingleInstance(identifier).isFirst());
    EXPECT_TRUE(SingleInstance(identifier).isFirst()); // the one before has gone
}

TEST_F(SingleInstanceTest, HandsOverToTheFirst) {
    SingleInstance first(identifier);
    EXPECT_EQ(raisedBySecondStart(first), 1);
    EXPECT_EQ(raisedBySecondStart(first), 1);
}

TEST_F(SingleInstanceTest, KeepsProgramsOfOtherNamesApart) {
    const SingleInstance first(identifier);
    EXPECT_TRUE(SingleInstance(identifier + ".demo").isFirst());
}

TEST_F(SingleInstanceTest, TakesOverTheSocketOfADeadProgram) {
    for (const QString& left : {identifier, identifier + ".lock"})
        QFile(folder.filePath(left)).open(QIODevice::WriteOnly);
    SingleInstance first(identifier);
    ASSERT_TRUE(first.isFirst());
    EXPECT_EQ(raisedBySecondStart(first), 1);
}

TEST_F(SingleInstanceTest, AnswersAStartThatCameBeforeItWasReady) {
    SingleInstance first(identifier);
    QLocalSocket other;
    other.connectToServer(folder.filePath(identifier));
    ASSERT_TRUE(other.waitForConnected());
    other.write("show\n");
    other.flush();
    QCoreApplication::processEvents();
    int raised = 0;
    first.onStartOfAnother([&raised] { ++raised; });
    while (other.state() == QLocalSocket::ConnectedState)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    EXPECT_EQ(raised, 1);
    EXPECT_EQ(other.readAll(), "shown\n");
}

TEST_F(SingleInstanceTest, IgnoresOtherRequests) {
    SingleInstance first(identifier);
    int raised = 0;
    first.onStartOfAnother([&raised] { ++raised; });
    for (const char* request : {"quit\n", "show me everything that you have\n"}) {
        QLocalSocket other;
        other.connectToServer(folder.filePath(identifier));
        ASSERT_TRUE(other.waitForConnected());
        other.write(request);
        while (other.state() == QLocalSocket::ConnectedState)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        EXPECT_EQ(other.readAll(), "");
    }
    EXPECT_EQ(raised, 0);
}

TEST_F(SingleInstanceTest, RunsWhereItCannotWriteALock) {
    qputenv("XDG_RUNTIME_DIR", "/proc/self");
    EXPECT_TRUE(SingleInstance(identifier).isFirst());
}

TEST_F(SingleInstanceTest, NeedsNoMessageBus) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const BusPresence presence(identifier, [] { FAIL(); });
}

} // namespace
} // namespace lumbrine
