#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "mail/message.h"

namespace velmora {

/// What has been fetched since the program started, in the order of fetching, each under a key of its own.
/// Positions count from 1.
class MailMessages {
public:
    /// Adds the message at the end. Fails with 457 if there is one under that key; the empty key is a key
    /// like any other.
    void Add(std::shared_ptr<CMessage> message, std::string key);

    /// Fails with 5 if there is no such position.
    CMessage& Item(std::size_t position) const;

    /// What stands behind moves up. Fails with 5 if there is no such position.
    void Remove(std::size_t position);

    std::size_t Count() const { return entries_.size(); }

private:
    struct Entry {
        std::shared_ptr<CMessage> message;
        std::string key;
    };
    void require(std::size_t position) const;

    std::vector<Entry> entries_;
    std::unordered_set<std::string> keys_;
};

}  // namespace velmora
