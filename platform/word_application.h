#pragma once

#include <memory>

namespace velmora {

/// A word processor that was started for the program. Destroying this lets go of it; a word processor that is
/// visible stays open, and so do its documents. No call waits for its windows.
class WordApplication {
public:
    virtual ~WordApplication() = default;

    /// Fails with 429 if the word processor can't be reached.
    virtual void setVisible(bool visible) = 0;

    /// Opens a new, empty document. Fails with 429 if the word processor can't be reached.
    virtual void DocumentsAdd() = 0;
};

/// Starts word processors.
class WordApplications {
public:
    virtual ~WordApplications() = default;

    /// A word processor of its own, not visible yet; it belongs to the caller. Fails with 429 if the machine
    /// has none.
    virtual std::unique_ptr<WordApplication> create() = 0;
};

}  // namespace velmora
