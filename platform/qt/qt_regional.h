#pragma once

#include <QLocale>

#include "platform/pattern_regional.h"

namespace velmora::qt {

/// How the locale writes short dates, and times with their seconds but without a time zone.
RegionalForm regionalForm(const QLocale& locale);

/// The pattern of such a time, for a widget.
QString timePattern(const QLocale& locale);

}  // namespace velmora::qt
