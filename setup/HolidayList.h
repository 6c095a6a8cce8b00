// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/SectionEdit.h"

#include <array>

namespace setup {

// The recorder's holidays as two sets of flags: fixed dates (month, day) and
// weekday holidays (month, weekday, week row of the month's calendar). The
// holiday section stores them as a list of entries; a weekday holiday keeps
// its occurrence in the month, which this class derives from the week row
// with the calendar of a given year, by the recorder's own formula.
struct HolidayList
{
    static constexpr int Months = 12;
    static constexpr int Days = 31;
    static constexpr int Weekdays = 7;
    static constexpr int WeekRows = 6;
    // Entries the section has room for.
    static constexpr int Capacity = 220;

    static constexpr quint32 FixedDate = 1;
    static constexpr quint32 NthWeekday = 2;

    // [month - 1][day - 1]
    std::array<std::array<bool, Days>, Months> fixed {};
    // [month - 1][weekday][week row], weekday 0 = Sunday
    std::array<std::array<std::array<bool, WeekRows>, Weekdays>, Months> weekday {};

    friend bool operator==(const HolidayList &, const HolidayList &) = default;

    int size() const;
    void clear() { *this = HolidayList {}; }

    // The weekday (0 = Sunday) of the first day of `month` (1-12) in `year`,
    // by the recorder's formula. Its century term differs from the Gregorian
    // calendar in the second half of each century, and stays so, since the
    // stored occurrences depend on it.
    static int firstWeekday(int year, int month);

    // The entries of the holiday section in `section`, as far as the count
    // and the bytes reach. Entries the flags cannot hold (unknown kind,
    // month, day or week row) are left out.
    static HolidayList fromSection(const SectionView &section, int year);
    // Writes the count (one byte) and the entries into `section`: fixed dates
    // by month and day first, then weekday holidays by month, weekday and
    // week row; at most Capacity of them. Every other byte stays.
    void toSection(SectionEdit &section, int year) const;
};

} // namespace setup
