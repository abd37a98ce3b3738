#pragma once

#include <string>

#include "platform/files.h"
#include "platform/shell.h"

namespace velmora {

/// The one door to the shell's "open" verb: a program, a document or an address, with no folder. Never fails,
/// and never tells whether anything was opened.
class Execute {
public:
    explicit Execute(Shell& shell) : shell_(shell) {}
    void operator()(const std::string& file) const;

private:
    Shell& shell_;
};

/// Whether there is a plain file at the path. A pattern names none, and neither does a folder.
bool FileExists(const Files& files, const std::string& path);

}  // namespace velmora
