#include "platform/posix/shared_library.h"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace velmora {

SharedLibrary::SharedLibrary(const char* name) : handle_(dlopen(name, RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(std::string(name).append(" is not installed"));
}

void* SharedLibrary::address(const char* name) const {
    void* found = dlsym(handle_, name);
    if (found == nullptr) throw std::runtime_error(std::string("the installed library has no ").append(name));
    return found;
}

}  // namespace velmora
