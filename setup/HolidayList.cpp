// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/HolidayList.h"

#include "setup/Fields.h"

namespace setup {

namespace {

namespace holiday = setup::fields::holiday;

// One whole entry of the list.
constexpr FieldInfo entry = FieldInfo::bytes("entry", holiday::kind.offset, holiday::kind.stride)
                                .repeat(holiday::kind.count, holiday::kind.stride);

} // namespace

int HolidayList::size() const
{
    int n = 0;
    for (const auto &month : fixed)
        n += int(std::count(month.begin(), month.end(), true));
    for (const auto &month : weekday) {
        for (const auto &rows : month)
            n += int(std::count(rows.begin(), rows.end(), true));
    }
    return n;
}

int HolidayList::firstWeekday(int year, int month)
{
    // March counts as month 1 and February as 12 of the year before.
    int m = month + 10;
    int y = year;
    if (month >= 3)
        m -= 12;
    else
        y -= 1;
    const int f = (13 * m - 1) / 5 + (5 * (y % 100)) / 4 - (2 * y) / 100 + y / 400 + 78;
    return ((f % 7) + 7) % 7;
}

HolidayList HolidayList::fromSection(const SectionView &section, int year)
{
    HolidayList list;
    const int count = std::min<int>(section.number(holiday::count), Capacity);
    for (int k = 0; k < count; ++k) {
        if (section.at(entry, k, 0) < 0)
            break;
        const quint32 type = section.number(holiday::kind, k);
        const int month = int(section.number(holiday::month, k));
        const int day = int(section.number(holiday::day, k));
        if (month < 1 || month > Months)
            continue;
        if (type == FixedDate && day >= 1 && day <= Days) {
            list.fixed[month - 1][day - 1] = true;
        } else if (type == NthWeekday) {
            const int weekday = int(section.number(holiday::weekday, k));
            if (weekday >= Weekdays)
                continue;
            // A weekday before the first of the month counts from the second row.
            const int row = weekday < firstWeekday(year, month) ? quint8(day + 1) : day;
            if (row < WeekRows)
                list.weekday[month - 1][weekday][row] = true;
        }
    }
    return list;
}

void HolidayList::toSection(SectionEdit &section, int year) const
{
    int k = 0;
    auto append = [&](quint32 type, int month, int day, int weekday) {
        if (k == Capacity)
            return;
        section.setNumber(holiday::kind, type, k);
        section.setNumber(holiday::month, quint32(month), k);
        section.setNumber(holiday::day, quint32(quint8(day)), k);
        if (type == NthWeekday)
            section.setNumber(holiday::weekday, quint32(weekday), k);
        ++k;
    };
    for (int m = 0; m < Months; ++m) {
        for (int d = 0; d < Days; ++d) {
            if (fixed[m][d])
                append(FixedDate, m + 1, d + 1, 0);
        }
    }
    for (int m = 0; m < Months; ++m) {
        const int first = firstWeekday(year, m + 1);
        for (int w = 0; w < Weekdays; ++w) {
            for (int row = 0; row < WeekRows; ++row) {
                if (weekday[m][w][row])
                    append(NthWeekday, m + 1, w < first ? row - 1 : row, w);
            }
        }
    }
    section.setNumber(holiday::count, quint32(k));
}

} // namespace setup
