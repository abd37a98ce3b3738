#pragma once

#include <optional>
#include <string>

#include "base/failure.h"
#include "platform/application.h"
#include "platform/posix/instance_lock.h"

namespace velmora {

/// A process as the running copy of the program. Where no lock can be had, it counts as the only copy.
class PosixApplication : public Application {
public:
    explicit PosixApplication(std::string folder) : folder_(std::move(folder)) {}

    const std::string& Path() const override { return folder_; }
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
    std::optional<InstanceLock> lock_;
};

}  // namespace velmora
