#pragma once

#include <QCalendarWidget>
#include <QDateTimeEdit>

#include "platform/controls.h"
#include "platform/qt/binding.h"

namespace velmora::qt {

/// A field for a date or a time, as the control says; how it is written is the widget's own.
class DTPickerBinding : public BindingOf<DTPicker, QDateTimeEdit> {
public:
    DTPickerBinding(DTPicker& model, QDateTimeEdit& widget, Loop& loop);

private:
    void show() override;
};

/// A month; days that are marked stand out in bold and underlined, so that no colour has to tell them.
class MonthViewBinding : public BindingOf<MonthView, QCalendarWidget> {
public:
    MonthViewBinding(MonthView& model, QCalendarWidget& widget, Loop& loop);

private:
    void show() override;
    void mark();
    void chosen(QDate date);

    bool justChosen_ = false;
    std::vector<std::chrono::year_month_day> marked_;  // as the widget has them
};

}  // namespace velmora::qt
