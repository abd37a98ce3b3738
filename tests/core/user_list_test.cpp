#include "core/user_list.h"

#include <gmock/gmock.h>

#include "base/failure.h"
#include "core/crypter.h"
#include "tests/support/in_memory_files.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(UserList, ReadsBackWhatItWrites) {
    InMemoryFiles files;
    UserList list(files, "/Users.vlu");
    list.write({"Anna:secret", "Bob:with:colon", "no separator", "Anna:secret"});
    EXPECT_THAT(list.read(), ElementsAre("Anna:secret", "Bob:with:colon", "no separator", "Anna:secret"));
    EXPECT_EQ(files.privacyOf("/Users.vlu"), Privacy::ownersOnly);
}

TEST(UserList, CollapsesEqualNeighboursAndDropsAnEmptyFirstEntry) {
    EXPECT_THAT(UserList::decode(UserList::encode({"", "", "a:1", "a:1", "", "", "a:1"})),
                ElementsAre("a:1", "", "a:1"));
    EXPECT_EQ(UserList::encode({}), "");
    EXPECT_EQ(UserList::encode({""}), "");
}

TEST(UserList, BreaksLinesAtEveryLineEndAndEnciphersEachAfresh) {
    const auto one = Encipher("a:1", userListKey);
    const auto two = Encipher("b:2", userListKey);
    EXPECT_THAT(UserList::decode(one + "\r\n" + two + "\r" + one + "\n" + two),
                ElementsAre("a:1", "b:2", "a:1", "b:2"));
}

TEST(UserList, SplitsAnEntryWhoseCipherHoldsALineEnd) {
    std::string entry = "a:";
    // The next character is the one whose cipher is a line feed.
    for (int code = 0; code < 255 && Encipher(entry, userListKey).back() != '\n'; ++code) {
        entry = "a:" + std::string(1, static_cast<char>(code));
    }
    entry += "rest";
    const auto halves = UserList::decode(UserList::encode({entry}));
    ASSERT_EQ(halves.size(), 2U);
    EXPECT_EQ(halves[0], "a:");
    EXPECT_EQ(UserList::decode(UserList::encode(halves)), halves);
}

TEST(UserList, FailsToReadAListThatIsNotThere) {
    InMemoryFiles files;
    EXPECT_THROW(UserList(files, "/Users.vlu").read(), Failure);
    files.put("/Users.vlu", "");
    EXPECT_THAT(UserList(files, "/Users.vlu").read(), IsEmpty());
}

}  // namespace
}  // namespace velmora
