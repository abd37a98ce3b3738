#include <iostream>

#include "core/users_command.h"
#include "platform/posix/application_folder.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/password_prompt.h"
#include "platform/posix/posix_files.h"

int main(int count, char** values) {
    velmora::PosixFiles files;
    const velmora::UsersCommandHost host{
        .files = files,
        .defaultFolder = velmora::defaultApplicationFolder(),
        .version = VELMORA_VERSION,
        .createFolder = velmora::createPrivateFolder,
        .askPassword =
            [](const std::string& name) {
                return velmora::askForPassword("Password for " + name + ": ", "The same again: ");
            },
        .output = std::cout,
        .complaints = std::cerr,
    };
    return velmora::runUsersCommand({values + 1, values + count}, host);
}
