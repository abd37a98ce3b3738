#include <iostream>

#include "base/failure.h"
#include "core/users_command.h"
#include "platform/posix/application_folder.h"
#include "platform/posix/data_folders.h"
#include "platform/posix/password_prompt.h"
#include "platform/posix/posix_files.h"

int main(int count, char** values) {
    velmora::PosixFiles files;
    const velmora::UsersCommandHost host{
        .files = files,
        .defaultFolder = velmora::defaultApplicationFolder(),
        .version = VELMORA_VERSION,
        .createFolder =
            [](const std::string& folder) {  // as complete as the program's own first start would make it
                if (!velmora::prepareApplicationFolder(folder, velmora::installedDataFolder())) {
                    throw velmora::Failure(velmora::errors::pathFileAccess);
                }
            },
        .askPassword =
            [](const std::string& name) {
                return velmora::askForPassword("Password for " + name + ": ", "The same again: ");
            },
        .output = std::cout,
        .complaints = std::cerr,
    };
    return velmora::runUsersCommand({values + 1, values + count}, host);
}
