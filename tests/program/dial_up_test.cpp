#include <gmock/gmock.h>

#include "tests/program/started_program.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DialUpTest : public StartedProgram {
protected:
    bool isConnected() {
        bool answer = false;
        program().run([&](Program& inside) { answer = inside.dialUp().IsConnected(); });
        return answer;
    }
};

TEST_F(DialUpTest, OnlyTheFirstConnectionDecides) {
    constexpr auto up = LinkStatus::connected;
    constexpr auto notYet = LinkStatus::connecting;
    const std::vector<std::pair<std::vector<LinkStatus>, bool>> cases{
        {{}, false}, {{notYet}, false}, {{up}, true}, {{notYet, up}, false}, {{up, notYet}, true}};
    for (const auto& [links, expected] : cases) {
        machine.link.found = links;
        EXPECT_EQ(isConnected(), expected) << links.size();
        EXPECT_THAT(program().takeLines(), IsEmpty());
    }
    EXPECT_EQ(machine.link.asked, 5);
}

TEST_F(DialUpTest, SystemThatCannotBeAskedGivesABoxEachTime) {
    machine.link.found = std::nullopt;
    for (int test = 0; test < 2; ++test) {
        EXPECT_FALSE(isConnected());
        EXPECT_THAT(program().takeLines(), ElementsAre("box Velmora ERROR none ok"));
    }
}

TEST_F(DialUpTest, ConnectEntryDialsAndDoesNothingElse) {
    machine.link.dialResult = 668;
    EXPECT_THAT(program().menu("mnuIntConnect").takeLines(), ElementsAre("dial 668"));
    EXPECT_EQ(machine.link.asked, 0);
    program().run([](Program& inside) { EXPECT_EQ(inside.dialUp().DialResult, 668); });
}

}  // namespace
}  // namespace velmora
