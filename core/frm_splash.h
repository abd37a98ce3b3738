#pragma once

#include "platform/form.h"

namespace velmora {

/// The picture that stands on the screen while the program starts.
class FrmSplash : public Form {
public:
    explicit FrmSplash(Forms& forms) : Form(forms, "FrmSplash", "Loading ...") {}
};

}  // namespace velmora
