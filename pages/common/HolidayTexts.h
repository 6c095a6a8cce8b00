// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "i18n/Translator.h"

#include <QString>

// The names the holiday editors show, as translation keys.
namespace holidayTexts {

inline constexpr const char *Months[] = {
    RS_TEXT("January"),   RS_TEXT("February"), RS_TEXT("March"),    RS_TEXT("April"),
    RS_TEXT("May"),       RS_TEXT("June"),     RS_TEXT("July"),     RS_TEXT("August"),
    RS_TEXT("September"), RS_TEXT("October"),  RS_TEXT("November"), RS_TEXT("December"),
};
inline constexpr const char *Weekdays[] = {
    RS_TEXT("Sunday"),   RS_TEXT("Monday"), RS_TEXT("Tuesday"),  RS_TEXT("Wednesday"),
    RS_TEXT("Thursday"), RS_TEXT("Friday"), RS_TEXT("Saturday"),
};
inline constexpr const char *WeekRows[] = {
    RS_TEXT("1st /"), RS_TEXT("2nd /"), RS_TEXT("3rd /"),
    RS_TEXT("4th /"), RS_TEXT("5th /"), RS_TEXT("6th /"),
};

// A weekday holiday as the holiday list and the weekday calendar name it,
// "January / 2nd / Monday" in English; month, row and weekday count from 0.
QString weekdayHoliday(int month, int row, int weekday);

} // namespace holidayTexts
