#include "platform/files.h"

namespace velmora {

// The separator is added without a look at the folder's end: two of them in a row name the same file.
std::string path(std::string_view folder, std::string_view name) {
    std::string joined;
    joined.reserve(folder.size() + 1 + name.size());
    return joined.append(folder).append("/").append(name);
}

}  // namespace velmora
