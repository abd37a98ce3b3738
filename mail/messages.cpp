#include "mail/messages.h"

#include <utility>

#include "base/failure.h"

namespace velmora {

void MailMessages::require(std::size_t position) const {
    if (position < 1 || position > entries_.size()) throw Failure(errors::invalidCall);
}

void MailMessages::Add(std::shared_ptr<CMessage> message, std::string key) {
    if (!keys_.insert(key).second) throw Failure(errors::duplicateKey);
    entries_.push_back({std::move(message), std::move(key)});
}

CMessage& MailMessages::Item(std::size_t position) const {
    require(position);
    return *entries_[position - 1].message;
}

void MailMessages::Remove(std::size_t position) {
    require(position);
    const auto entry = entries_.begin() + static_cast<std::ptrdiff_t>(position) - 1;
    keys_.erase(entry->key);
    entries_.erase(entry);
}

}  // namespace velmora
