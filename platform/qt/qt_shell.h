#pragma once

#include <QUrl>
#include <functional>

#include "platform/shell.h"

namespace velmora::qt {

struct DesktopProgram;

/// The desktop's shell and clipboard. Programs and handlers are started apart from this one, and never waited
/// for. A target that is no program, file or address may be a role of the desktop, as `desktopProgram` has
/// it.
class QtShell : public Shell {
public:
    using Opener = std::function<bool(const QUrl&)>;

    /// Opens addresses and documents with the desktop's handlers.
    QtShell();
    /// Opens addresses and documents with `opener`.
    explicit QtShell(Opener opener) : opener_(std::move(opener)) {}

    void open(const std::string& target, const std::string& folder) override;
    std::string clipboardText() const override;
    void setClipboardText(const std::string& text) override;

private:
    void openOwn(const DesktopProgram& own) const;

    Opener opener_;
};

}  // namespace velmora::qt
