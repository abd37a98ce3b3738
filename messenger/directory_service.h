#pragma once

#include <string>
#include <string_view>

#include "platform/machine_settings.h"

namespace velmora {

/// The addresses of the central directory service, which knows who is who and who is online. What a request
/// means stands in its path and query alone. Values go into it as they are: nothing is escaped, on purpose,
/// since the service takes them that way.
class DirectoryService {
public:
    /// `machine` names the endpoint, which is read for each request; it must outlive this object.
    explicit DirectoryService(const MachineSettings& machine) : machine_(machine) {}

    /// Asks for a new profile; the whole body of the answer is the user's new number.
    std::string createProfile(std::string_view firstName, std::string_view lastName, std::string_view eMail,
                              std::string_view nickName) const;

private:
    std::string address(std::string_view path) const;

    const MachineSettings& machine_;
};

}  // namespace velmora
