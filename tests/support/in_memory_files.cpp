#include "tests/support/in_memory_files.h"

#include "base/failure.h"
#include "base/text.h"

namespace velmora {
namespace {

/// The path with single separators and none at its end, so that one file has one name.
std::string normal(std::string_view path) {
    std::string result;
    for (const char character : path) {
        if (character != '/' || !result.ends_with('/')) result += character;
    }
    if (result.size() > 1 && result.ends_with('/')) result.pop_back();
    return result;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return "";
    return slash == 0 ? "/" : path.substr(0, slash);
}

void refuseNul(std::string_view path) {
    if (path.find('\0') != std::string_view::npos) throw Failure(errors::pathFileAccess);
}

}  // namespace

const InMemoryFiles::File& InMemoryFiles::find(const std::string& path) const {
    refuseNul(path);
    const auto name = normal(path);
    if (folders_.contains(name)) throw Failure(errors::pathFileAccess);
    const auto found = files_.find(name);
    if (found != files_.end()) return found->second;
    throw Failure(folders_.contains(folderOf(name)) ? errors::fileNotFound : errors::pathNotFound);
}

void InMemoryFiles::countWrite() {
    if (++writes_ == failingWrite_) throw Failure(errors::pathFileAccess);
}

bool InMemoryFiles::exists(const std::string& path) const {
    const auto name = normal(path);
    return files_.contains(name) || (!path.empty() && folders_.contains(name));
}

std::string InMemoryFiles::read(const std::string& path) const {
    const auto& file = find(path);
    if (file.unreadable) throw Failure(errors::pathFileAccess);
    return file.content;
}

void InMemoryFiles::replace(const std::string& path, std::string_view content, Privacy privacy) {
    refuseNul(path);
    countWrite();
    const auto name = normal(path);
    if (folders_.contains(name)) throw Failure(errors::pathFileAccess);
    if (!folders_.contains(folderOf(name))) throw Failure(errors::pathNotFound);
    auto& file = files_[name];
    if (file.readOnly) throw Failure(errors::pathFileAccess);
    file.content = content;
    file.privacy = privacy;
}

void InMemoryFiles::remove(const std::string& path) {
    countWrite();
    static_cast<void>(find(path));
    files_.erase(normal(path));
}

std::vector<std::string> InMemoryFiles::list(const std::string& folder, std::string_view ending) const {
    refuseNul(folder);
    std::vector<std::string> names;
    const auto where = normal(folder);
    for (const auto& [path, file] : files_) {
        auto name = path.substr(path.find_last_of('/') + 1);
        if (folderOf(path) == where && endsWithIgnoringCase(name, ending)) names.push_back(std::move(name));
    }
    return names;
}

void InMemoryFiles::createFolder(const std::string& path) {
    for (auto name = normal(path); folders_.insert(name).second;) name = folderOf(name);
}

void InMemoryFiles::put(const std::string& path, std::string content) {
    createFolder(folderOf(normal(path)));
    files_[normal(path)].content = std::move(content);
}

void InMemoryFiles::makeReadOnly(const std::string& path) {
    files_.at(normal(path)).readOnly = true;
}

void InMemoryFiles::makeUnreadable(const std::string& path) {
    files_.at(normal(path)).unreadable = true;
}

void InMemoryFiles::failWrite(int number) {
    failingWrite_ = writes_ + number;
}

Privacy InMemoryFiles::privacyOf(const std::string& path) const {
    return find(path).privacy;
}

}  // namespace velmora
