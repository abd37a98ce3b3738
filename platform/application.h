#pragma once

#include <string>

#include "platform/files.h"

namespace velmora {

/// The running copy of the program, as the machine knows it.
class Application {
public:
    virtual ~Application() = default;

    /// The application folder: all files of the program lie in it.
    virtual const std::string& Path() const = 0;

    /// Whether another copy is running already, for this user, on this display, with this application folder.
    /// The first call decides: it makes this copy the running one if there is none.
    virtual bool PrevInstance() = 0;

    /// The three numbers of the program's version.
    static constexpr int Major = VELMORA_VERSION_MAJOR;
    static constexpr int Minor = VELMORA_VERSION_MINOR;
    static constexpr int Revision = VELMORA_VERSION_REVISION;

    /// The page that explains the program; it came with the application folder.
    virtual std::string HelpFile() const {
        return velmora::path(velmora::path(Path(), "help"), "velmora.html");
    }
};

}  // namespace velmora
