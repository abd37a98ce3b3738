#include "desktop/execute.h"

#include <algorithm>

#include "base/failure.h"

namespace velmora {

void Execute::operator()(const std::string& file) const {
    passOver([&] { shell_.open(file, {}); });
}

bool FileExists(const Files& files, const std::string& path) {
    const auto separator = path.rfind('/');
    const std::string folder = separator == std::string::npos ? "." : path.substr(0, separator);
    const std::string name = separator == std::string::npos ? path : path.substr(separator + 1);
    const auto same = files.list(folder.empty() ? "/" : folder, name);
    return std::find(same.begin(), same.end(), name) != same.end();
}

}  // namespace velmora
