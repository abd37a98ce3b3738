#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/control.h"
#include "platform/form.h"
#include "platform/menu.h"

namespace velmora {

/// Why a line of input could not be followed; nothing has changed then.
struct LineError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Finds what a line of input names: `cmdOK`, `frmLogin.cmdOK`, `cmdFrames(2)`, `FrmMain.mnuHide`. Names
/// ignore case; a bare one means the main window first, then the others. Never loads a form. Each fails with
/// a `LineError`.
class Addresses {
public:
    explicit Addresses(const Forms& forms) : forms_(forms) {}

    Form& form(std::string_view name) const;
    /// Of a loaded form.
    Form& loadedForm(std::string_view name) const;
    Control& control(std::string_view address) const;
    Menu& menu(std::string_view address) const;

    /// The value that `get` prints for `ADDRESS[.PROPERTY]`.
    std::string value(std::string_view address) const;

private:
    template <class T>
    T* find(std::string_view address) const;
    template <class T>
    T& findLoaded(std::string_view address) const;

    const Forms& forms_;
};

}  // namespace velmora
