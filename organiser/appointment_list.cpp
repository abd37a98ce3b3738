#include "organiser/appointment_list.h"

#include <algorithm>

#include "base/failure.h"
#include "organiser/appointment.h"

namespace velmora {

std::size_t AppointmentList::find(std::string_view record) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [record](const Entry& entry) { return entry.record == record; });
    return found == entries_.end() ? 0 : static_cast<std::size_t>(found - entries_.begin()) + 1;
}

void AppointmentList::Remove(std::size_t index) {
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index) - 1);
}

std::optional<DateTime> AppointmentList::read(const std::string& record) const {
    const auto fields = appointmentFields(record);
    if (!fields) return std::nullopt;
    try {
        return regional_->toDateTime(fields->date);
    } catch (const Failure&) {
        return std::nullopt;
    }
}

std::optional<DateTime> AppointmentList::date(std::size_t index) const {
    Entry& entry = entries_[index - 1];
    if (!entry.date) entry.date = read(entry.record);
    return *entry.date;
}

std::vector<std::chrono::year_month_day> AppointmentList::days() const {
    std::vector<std::chrono::year_month_day> days;
    for (std::size_t index = 1; index <= std::min(Count(), lastIndex); ++index) {
        const auto day = date(index);
        if (day && day->time == std::chrono::seconds(0)) days.push_back(day->date);
    }
    std::sort(days.begin(), days.end());
    days.erase(std::unique(days.begin(), days.end()), days.end());
    return days;
}

}  // namespace velmora
