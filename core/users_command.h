#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class Files;

/// What the users command works with. All of it must outlive the run.
struct UsersCommandHost {
    Files& files;
    std::string defaultFolder;  ///< the user's application folder; empty if there is none
    std::string_view version;

    /// Creates the folder, private to its user, if it is missing. Fails with 75.
    std::function<void(const std::string& folder)> createFolder;

    /// The new password of the user; nothing if none was given.
    std::function<std::optional<std::string>(const std::string& name)> askPassword;

    std::ostream& output;
    std::ostream& complaints;
};

/// Keeps the user list: `[--folder DIR] add NAME | remove NAME | list`. Gives the exit status: 0 done, 1 not
/// done (the list is as it was), 2 misused. Lines of the list that it does not change stay as they are,
/// rubbish included. Never shows a password.
int runUsersCommand(const std::vector<std::string>& arguments, const UsersCommandHost& host);

}  // namespace velmora
