#pragma once

#include <string>

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
};

}  // namespace velmora
