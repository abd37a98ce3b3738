#include "platform/qt/date_bindings.h"

#include <QAbstractItemView>
#include <QDate>
#include <QTextCharFormat>
#include <QTime>

#include "base/conversions.h"
#include "platform/qt/qt_regional.h"

namespace velmora::qt {
namespace {

QDate toQDate(std::chrono::year_month_day date) {
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

QTime toQTime(std::chrono::seconds time) {
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>(std::chrono::milliseconds(time).count()));
}

std::string typedText(QDate date) {
    return dateText(std::chrono::year{date.year()} / date.month() / date.day());
}

std::string typedText(QTime time) {
    return timeText(std::chrono::seconds{time.msecsSinceStartOfDay() / 1000});
}

// All dates that `toDateTime` reads.
template <class Widget>
void allowAllDates(Widget& widget) {
    widget.setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
}

}  // namespace

DTPickerBinding::DTPickerBinding(DTPicker& model, QDateTimeEdit& widget, Loop& loop)
    : BindingOf(model, widget, loop) {
    if (model.Shows == PickerKind::date) allowAllDates(widget);
    // Seconds that are not on view would still be part of the time that a person has set.
    if (model.Shows == PickerKind::time) widget.setDisplayFormat(timePattern(widget.locale()));
    QObject::connect(&widget, &QDateTimeEdit::dateTimeChanged, context(), [this] {
        enter([this] {
            model_.type(model_.Shows == PickerKind::time ? typedText(widget_.time())
                                                         : typedText(widget_.date()));
        });
    });
}

void DTPickerBinding::show() {
    const DateTime& value = model_.Value.peek();
    if (model_.Shows == PickerKind::time) {
        if (widget_.time() != toQTime(value.time)) widget_.setTime(toQTime(value.time));
    } else if (widget_.date() != toQDate(value.date)) {
        widget_.setDate(toQDate(value.date));
    }
}

// A click on another day changes the selection first, in the same event: together they are one choice,
// whereas a click on the chosen day, which changes nothing, is a choice too.
MonthViewBinding::MonthViewBinding(MonthView& model, QCalendarWidget& widget, Loop& loop)
    : BindingOf(model, widget, loop) {
    allowAllDates(widget);
    QObject::connect(&widget, &QCalendarWidget::selectionChanged, context(), [this] {
        if (!listening()) return;
        chosen(widget_.selectedDate());
        justChosen_ = true;
        QMetaObject::invokeMethod(
            context(), [this] { justChosen_ = false; }, Qt::QueuedConnection);
    });
    QObject::connect(&widget, &QCalendarWidget::clicked, context(), [this](QDate date) {
        if (!justChosen_) chosen(date);
    });
}

void MonthViewBinding::chosen(QDate date) {
    enter([&] { model_.type(typedText(date)); });
}

void MonthViewBinding::show() {
    const QDate date = toQDate(model_.Value.peek().date);
    if (widget_.selectedDate() != date) widget_.setSelectedDate(date);
    // The days' own table has the keyboard; a screen reader would find neither a name nor a month there.
    if (auto* days = widget_.findChild<QAbstractItemView*>())
        days->setAccessibleName(widget_.locale().toString(date, QLocale::LongFormat));
    if (marked_ != model_.marked()) mark();
}

void MonthViewBinding::mark() {
    QTextCharFormat standsOut;
    standsOut.setFontWeight(QFont::Black);
    standsOut.setFontUnderline(true);
    widget_.setDateTextFormat({}, {});
    marked_ = model_.marked();
    for (const auto& day : marked_) widget_.setDateTextFormat(toQDate(day), standsOut);
}

}  // namespace velmora::qt
