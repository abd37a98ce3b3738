#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "base/failure.h"
#include "platform/application.h"
#include "platform/posix/instance_lock.h"

namespace velmora {

/// A process as the running copy of the program. Where no lock can be had, it counts as the only copy.
class PosixApplication : public Application {
public:
    PosixApplication(std::string folder, std::string installed)
        : folder_(std::move(folder)), installed_(std::move(installed)) {}

    const std::string& Path() const override { return folder_; }
    /// The installed page, if the application folder was not filled with one.
    std::string HelpFile() const override {
        const std::string own = Application::HelpFile();
        std::error_code error;
        return std::filesystem::exists(own, error)
                   ? own
                   : velmora::path(velmora::path(installed_, "help"), "velmora.html");
    }
    bool PrevInstance() override {
        if (lock_) return false;
        try {
            lock_ = InstanceLock::acquire(displayName(), folder_, defaultLockFolder());
            return !lock_;
        } catch (const Failure&) {
            return false;
        }
    }

private:
    std::string folder_;
    std::string installed_;
    std::optional<InstanceLock> lock_;
};

}  // namespace velmora
