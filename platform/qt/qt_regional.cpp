#include "platform/qt/qt_regional.h"

#include "platform/qt/text.h"

namespace velmora::qt {

QString timePattern(const QLocale& locale) {
    QString pattern;
    bool quoted = false;
    for (const QChar letter : locale.timeFormat(QLocale::LongFormat)) {
        if (letter == u'\'') quoted = !quoted;
        if (!quoted && letter == u'B') {
            pattern += QStringLiteral("AP");  // a part of the day, such as "in the afternoon"
        } else if (quoted || letter != u't') {
            pattern += letter;
        }
    }
    for (const auto& zone : {QStringLiteral("()"), QStringLiteral("[]")}) pattern.remove(zone);
    return pattern.trimmed();
}

RegionalForm regionalForm(const QLocale& locale) {
    const QString date = locale.dateFormat(QLocale::ShortFormat);
    const auto names = date.contains(QStringLiteral("MMMM")) ? QLocale::LongFormat : QLocale::ShortFormat;
    RegionalForm form{.datePattern = typedBytes(date),
                      .timePattern = typedBytes(timePattern(locale)),
                      .am = typedBytes(locale.amText()),
                      .pm = typedBytes(locale.pmText())};
    for (int month = 1; month <= 12; ++month)
        form.months.at(static_cast<std::size_t>(month) - 1) = typedBytes(locale.monthName(month, names));
    return form;
}

}  // namespace velmora::qt
