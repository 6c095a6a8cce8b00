// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/HolidayTexts.h"

#include "i18n/Translator.h"

using namespace Qt::StringLiterals;

QString holidayTexts::weekdayHoliday(int month, int row, int weekday)
{
    return nelib::tr("%s /").replace(u"%s"_s, nelib::tr(Months[month])) + u' '
           + nelib::tr(WeekRows[row]) + u' ' + nelib::tr(Weekdays[weekday]);
}
