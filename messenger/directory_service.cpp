#include "messenger/directory_service.h"

namespace velmora {

std::string DirectoryService::address(std::string_view path) const {
    std::string endpoint = machine_.value("Directory", "Endpoint");
    while (endpoint.ends_with('/')) endpoint.pop_back();  // written like an address of a page
    return endpoint.append("/messenger/").append(path);
}

std::string DirectoryService::createProfile(std::string_view firstName, std::string_view lastName,
                                            std::string_view eMail, std::string_view nickName) const {
    return address("CreateProfile.asp")
        .append("?FName=")
        .append(firstName)
        .append("&Lname=")
        .append(lastName)
        .append("&EMail=")
        .append(eMail)
        .append("&NickName=")
        .append(nickName);
}

}  // namespace velmora
