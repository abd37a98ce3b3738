#include "platform/qt/qt_loop_host.h"

#include <gmock/gmock.h>

#include <QPointer>
#include <thread>

using namespace velmora;
using namespace std::chrono_literals;

namespace {

struct LoopHostTest : testing::Test {
    LoopHostTest() { host.carry(&loop); }
    qt::QtLoopHost host;
    Loop loop{host};
};

}  // namespace

TEST_F(LoopHostTest, CallsFromAnotherThreadEndAnEndlessWaitAndArriveInOrder) {
    std::vector<int> arrived;
    std::thread other([&] {
        for (int call : {1, 2, 3}) host.postFromThread([&, call] { arrived.push_back(call); });
    });
    loop.run([&] { return arrived.size() == 3; });
    other.join();
    EXPECT_THAT(arrived, testing::ElementsAre(1, 2, 3));
}

TEST_F(LoopHostTest, AWaitThatNothingEndsLastsItsTimeAndCostsNoProcessorTime) {
    host.serve(0ms);
    const auto begin = host.elapsed();
    const auto processor = std::clock();
    for (auto left = 120ms; left > 0ms; left = 120ms - (host.elapsed() - begin)) host.serve(left);
    EXPECT_GE(host.elapsed() - begin, 120ms);
    EXPECT_LT(std::clock() - processor, CLOCKS_PER_SEC / 20);
}

TEST_F(LoopHostTest, NothingIsDeletedWhileATurnIsUnderWay) {
    QPointer<QObject> object = new QObject;
    bool waited = false;
    loop.post([&] {
        object->deleteLater();
        host.postFromThread([&] { waited = true; });
        loop.wait([&] { return waited; });
        EXPECT_TRUE(object);
    });
    loop.run([&] { return !object; });
    EXPECT_TRUE(waited);
}
