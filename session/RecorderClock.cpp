// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/RecorderClock.h"

#include <array>

void RecorderClock::tick(RecorderTime &time)
{
    std::array<int, 13> days {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31, 31};
    const int year = time.year;
    if (year % 400 == 0 || (year % 4 == 0 && year % 100 != 0))
        days[1] = 29;

    if (++time.second < 60)
        return;
    time.second = 0;
    if (++time.minute < 60)
        return;
    time.minute = 0;
    if (++time.hour < 24)
        return;
    time.hour = 0;
    ++time.day;
    if (time.month >= days.size() || time.day != days[time.month])
        return;
    time.day = 0;
    if (++time.month < 13)
        return;
    time.month = 0;
    ++time.year;
}
