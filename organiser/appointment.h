#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// The parts of an appointment's record, as views into it.
struct AppointmentFields {
    std::string_view date;
    std::string_view time;
    std::string_view event;
};

/// The record of an appointment: each part followed by "@". There is no escape: an "@" in the event is meant
/// to cut it short wherever it is shown, and the record keeps it whole.
std::string appointmentRecord(const AppointmentFields& fields);

/// The parts of a record up to its third "@"; nothing for a text that has no three of them.
std::optional<AppointmentFields> appointmentFields(std::string_view record);

}  // namespace velmora
