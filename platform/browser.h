#pragma once

#include <string>

namespace velmora {

/// The web browser that a person has open.
class Browser {
public:
    virtual ~Browser() = default;

    /// What the browser says of its current page: fields in double quotes, separated by commas, first the
    /// address, then the title; more may follow. A quote or comma within a field stands there as it is. Takes
    /// two seconds at most. Fails with 282 if no browser is open, or none answers.
    virtual std::string WWW_GetWindowInfo() const = 0;
};

}  // namespace velmora
