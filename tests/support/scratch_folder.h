#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace velmora {

/// A folder that goes with the object.
class ScratchFolder {
public:
    /// Throws std::filesystem::filesystem_error if it can't be made.
    ScratchFolder() : path_(std::filesystem::temp_directory_path() / "velmora-test-XXXXXX") {
        if (!mkdtemp(path_.data())) throw std::filesystem::filesystem_error("no scratch folder", path_, {});
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string file(std::string_view name) const { return path_ + "/" + std::string(name); }
    void write(std::string_view name, std::string_view content) const {
        std::ofstream(file(name), std::ios::binary) << content;
    }
    std::string read(std::string_view name) const {
        std::ifstream in(file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    std::string path_;
};

}  // namespace velmora
