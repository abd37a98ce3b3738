#include "organiser/appointment.h"

namespace velmora {
namespace {

constexpr char fieldEnd = '@';

}  // namespace

std::string appointmentRecord(const AppointmentFields& fields) {
    std::string record;
    for (const std::string_view field : {fields.date, fields.time, fields.event})
        record.append(field).append(1, fieldEnd);
    return record;
}

std::optional<AppointmentFields> appointmentFields(std::string_view record) {
    AppointmentFields fields;
    for (auto* field : {&fields.date, &fields.time, &fields.event}) {
        const auto end = record.find(fieldEnd);
        if (end == std::string_view::npos) return std::nullopt;
        *field = record.substr(0, end);
        record.remove_prefix(end + 1);
    }
    return fields;
}

}  // namespace velmora
