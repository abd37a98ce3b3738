#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/conversions.h"
#include "platform/regional.h"

namespace velmora {

/// The records of all appointments, in the order of adding, counted from 1. Any text can be among them.
class AppointmentList {
public:
    /// What an index can be at most: it is counted in 16 bits.
    static constexpr std::size_t lastIndex = INT16_MAX;

    /// `regional` outlives the list.
    explicit AppointmentList(const Regional& regional) : regional_(&regional) {}

    void Add(std::string record) { entries_.push_back({std::move(record), {}}); }
    std::size_t Count() const { return entries_.size(); }

    /// The record; its index is there.
    const std::string& Item(std::size_t index) const { return entries_[index - 1].record; }
    /// Index of the first record of that text, 0 if there is none.
    std::size_t find(std::string_view record) const;
    /// The index is there.
    void Remove(std::size_t index);

    /// The day that the record is for; nothing if it is no record, or its date can't be read as one. A time
    /// in it counts. The index is there.
    std::optional<DateTime> date(std::size_t index) const;

    /// The days of all records up to `lastIndex`, in order, each once.
    std::vector<std::chrono::year_month_day> days() const;

private:
    struct Entry {
        std::string record;
        std::optional<std::optional<DateTime>> date;  ///< once it has been read, which takes its time
    };

    std::optional<DateTime> read(const std::string& record) const;

    const Regional* regional_;
    mutable std::vector<Entry> entries_;
};

}  // namespace velmora
