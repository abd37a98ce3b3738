#pragma once

#include <functional>
#include <string>

#include "base/failure.h"
#include "platform/dialogs.h"

namespace velmora {

/// Tells the person that the character platform is not there.
void showStartUpBox(Dialogs& dialogs);

/// Shows an error that nothing foresaw, and always asks whether to mail it; on Yes, `Execute` opens a mail to
/// the address.
void reportError(Dialogs& dialogs, const Failure& failure, const std::string& feedbackAddress,
                 const std::function<void(const std::string&)>& Execute);

}  // namespace velmora
