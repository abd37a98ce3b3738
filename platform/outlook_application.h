#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "base/conversions.h"

namespace velmora {

/// What a task and an appointment have in common. Every call fails with 429 if the service behind it is gone.
class OutlookItem {
public:
    virtual ~OutlookItem() = default;

    virtual std::string Subject() const = 0;

    /// Opens the item's window and returns at once. A new item lies in no folder before that; whether it is
    /// kept is for the person to say. Fails with 429 if nothing on this machine can show it.
    virtual void Display() = 0;
};

class TaskItem : public OutlookItem {
public:
    /// Nothing if the task has none.
    virtual std::optional<std::chrono::year_month_day> DueDate() const = 0;
    virtual void setDueDate(std::chrono::year_month_day date) = 0;
};

class AppointmentItem : public OutlookItem {
public:
    /// In local time; midnight for an appointment that takes the whole day. A series is one item, and starts
    /// with its first date.
    virtual DateTime Start() const = 0;
};

/// The default folders, by the numbers that the program knows them by.
enum class OutlookFolder {
    inbox = 6,
    calendar = 9,
    tasks = 13,
};

/// The user's tasks, appointments and mail. A folder is looked at when it is first asked for, and stays as it
/// was then for the life of this object. Items belong to the caller and may outlive it. Every call fails with
/// 429 if the service behind it is gone.
class OutlookApplication {
public:
    virtual ~OutlookApplication() = default;

    /// A new task, without subject and due date.
    virtual std::unique_ptr<TaskItem> CreateTask() = 0;
    /// A new appointment, without subject, at a time of the service's choice.
    virtual std::unique_ptr<AppointmentItem> CreateAppointment() = 0;

    /// How many items the folder holds, the done, past and read ones too.
    virtual int ItemsCount(OutlookFolder folder) const = 0;
    /// The task, counted from 1 in the folder's own order. Fails with 91 if there is none.
    virtual std::unique_ptr<TaskItem> Task(int index) = 0;
    /// The appointment, counted from 1 in the folder's own order. Fails with 91 if there is none.
    virtual std::unique_ptr<AppointmentItem> Appointment(int index) = 0;
};

/// Connects to the service that keeps the user's tasks, appointments and mail.
class OutlookApplications {
public:
    virtual ~OutlookApplications() = default;

    /// A new connection to the user's own store; it belongs to the caller. Fails with 429 if there is no such
    /// service.
    virtual std::unique_ptr<OutlookApplication> create() = 0;
};

}  // namespace velmora
