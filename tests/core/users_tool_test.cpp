#include <gmock/gmock.h>

#include <sstream>

#include "base/failure.h"
#include "core/crypter.h"
#include "core/user_list.h"
#include "core/users_command.h"
#include "tests/support/in_memory_files.h"

namespace velmora {
namespace {

using namespace testing;

class UsersTool : public testing::Test {
protected:
    int run(const std::vector<std::string>& arguments) {
        output.str("");
        complaints.str("");
        return runUsersCommand(arguments, host);
    }

    std::vector<std::string> entries() { return UserList::decode(files.read("/data/Users.vlu")); }

    InMemoryFiles files;
    std::ostringstream output, complaints;
    std::optional<std::string> password = "secret";
    UsersCommandHost host{.files = files,
                          .defaultFolder = "/data",
                          .version = "1.2",
                          .createFolder = [this](const std::string& folder) { files.createFolder(folder); },
                          .askPassword = [this](const std::string&) { return password; },
                          .output = output,
                          .complaints = complaints};
};

TEST_F(UsersTool, AddsListsAndRemoves) {
    EXPECT_EQ(run({"add", "Anna"}), 0);
    password = "with:colon";
    EXPECT_EQ(run({"add", "Bob"}), 0);
    EXPECT_THAT(output.str(), StartsWith("Added Bob"));
    EXPECT_THAT(entries(), ElementsAre("Anna:secret", "Bob:with:colon"));
    EXPECT_EQ(files.privacyOf("/data/Users.vlu"), Privacy::ownersOnly);

    EXPECT_EQ(run({"list"}), 0);
    EXPECT_EQ(output.str(), "Anna\nBob\n");
    EXPECT_EQ(run({"remove", "Anna"}), 0);
    EXPECT_THAT(entries(), ElementsAre("Bob:with:colon"));
    EXPECT_EQ(run({"remove", "Anna"}), 1);
    EXPECT_EQ(complaints.str(), "There is no user Anna.\n");
}

TEST_F(UsersTool, GivesAnExistingUserANewPasswordAndNoOldOneStays) {
    files.put("/data/Users.vlu", UserList::encode({"anna:1", "Anna:old", "Bob:2", "Anna:older"}));
    EXPECT_EQ(run({"add", "Anna"}), 0);
    EXPECT_THAT(output.str(), StartsWith("Changed the password of Anna"));
    EXPECT_THAT(entries(), ElementsAre("anna:1", "Anna:secret", "Bob:2"));
    EXPECT_EQ(run({"remove", "Anna"}), 0);
    EXPECT_THAT(entries(), ElementsAre("anna:1", "Bob:2"));
}

TEST_F(UsersTool, LeavesRubbishInTheListByteForByte) {
    // A code of 0 does not survive being deciphered and enciphered again.
    const std::string rubbish("\0\0\0rubbish\n\nmore\0", 17);
    files.put("/data/Users.vlu", rubbish);
    EXPECT_EQ(run({"add", "Anna"}), 0);
    EXPECT_EQ(files.read("/data/Users.vlu"), rubbish + "\n" + Encipher("Anna:secret", userListKey) + "\n");
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_EQ(output.str(), "Anna\n");
}

TEST_F(UsersTool, RefusesNamesThatCanNotStandInTheListOrNameAFile) {
    for (const auto& name :
         {std::string(), std::string("a:b"), std::string("../x"), std::string("a\nb"), std::string("a\0b", 3),
          std::string("\x1b[2J"), std::string(".ini"), std::string("name\xFF"), std::string(252, 'n')}) {
        EXPECT_EQ(run({"add", name}), 1) << name;
        EXPECT_THAT(complaints.str(), HasSubstr("name")) << name;
    }
    EXPECT_FALSE(files.exists("/data"));
}

TEST_F(UsersTool, RefusesAPasswordThatWouldNotReadBack) {
    int refused = 0;
    for (char character = '!'; character <= '~'; ++character) {
        password = std::string("Pass") + character;
        const int status = run({"add", "Anna"});
        const auto line = Encipher("Anna:" + *password, userListKey);
        const bool breaks = line.find_first_of("\r\n") != std::string::npos;
        EXPECT_EQ(status, breaks ? 1 : 0) << *password;
        EXPECT_THAT(output.str() + complaints.str(), Not(HasSubstr(*password)));
        refused += status;
    }
    for (const char* text : {"\xFF", "a\tb"}) {
        password = text;
        EXPECT_EQ(run({"add", "Anna"}), 1);
    }
    password.reset();
    EXPECT_EQ(run({"add", "Anna"}), 1);
    EXPECT_EQ(entries().size(), 1U);
}

TEST_F(UsersTool, ChangesNothingWhereTheListOrTheFolderRefuses) {
    const auto before = UserList::encode({"Anna:old"});
    files.put("/data/Users.vlu", before);
    files.failWrite(1);
    EXPECT_EQ(run({"add", "Anna"}), 1);
    files.makeReadOnly("/data/Users.vlu");
    EXPECT_EQ(run({"remove", "Anna"}), 1);
    EXPECT_EQ(files.read("/data/Users.vlu"), before);

    const int writes = files.writes();
    files.makeUnreadable("/data/Users.vlu");
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"add", "Bob"}, {"remove", "Anna"}, {"list"}}) {
        EXPECT_EQ(run(arguments), 1);
        EXPECT_THAT(complaints.str(), HasSubstr("/data/Users.vlu can't be read"));
    }
    EXPECT_EQ(files.writes(), writes);

    host.createFolder = [](const std::string&) { throw Failure(errors::pathFileAccess); };
    EXPECT_EQ(run({"--folder", "/elsewhere", "add", "Bob"}), 1);
    EXPECT_FALSE(files.exists("/elsewhere"));
}

TEST_F(UsersTool, TakesItsFolderFromTheOptionAndToleratesAMissingOne) {
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_EQ(output.str(), "");
    EXPECT_EQ(run({"add", "--folder", "/other", "--", "--odd"}), 0);
    EXPECT_EQ(run({"list", "--folder", "/other"}), 0);
    EXPECT_EQ(output.str(), "--odd\n");
    host.defaultFolder.clear();
    EXPECT_EQ(run({"list"}), 1);
}

TEST_F(UsersTool, ShowsUsageForWhatItDoesNotKnow) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {}, {"add"}, {"add", "a", "b"}, {"list", "x"}, {"rename", "a"}, {"--x", "list"}, {"--folder"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_THAT(complaints.str(), HasSubstr("Usage: velmora-users"));
        EXPECT_THAT(output.str(), IsEmpty());
    }
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_THAT(output.str(), StartsWith("Usage: velmora-users"));
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(output.str(), "velmora-users 1.2\n");
}

}  // namespace
}  // namespace velmora
