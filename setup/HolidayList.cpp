// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/HolidayList.h"

#include "setup/FieldTable.h"
#include "setup/Fields.h"

namespace setup {

namespace {

namespace holiday = setup::fields::holiday;

FieldInfo inSection(FieldInfo field)
{
    field.offset -= holiday::base;
    return field;
}

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

HolidayList HolidayList::fromSection(QByteArrayView section, int year)
{
    HolidayList list;
    const int count
        = std::min<int>(FieldTable::number(section, inSection(holiday::count)), Capacity);
    for (int k = 0; k < count; ++k) {
        const FieldInfo kind = inSection(holiday::kind);
        if (kind.elementOffset(k) + 8 > section.size())
            break;
        const quint32 type = FieldTable::number(section, kind, k);
        const int month = int(FieldTable::number(section, inSection(holiday::month), k));
        const int day = int(FieldTable::number(section, inSection(holiday::day), k));
        if (month < 1 || month > Months)
            continue;
        if (type == FixedDate && day >= 1 && day <= Days) {
            list.fixed[month - 1][day - 1] = true;
        } else if (type == NthWeekday) {
            const int weekday = int(FieldTable::number(section, inSection(holiday::weekday), k));
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

void HolidayList::toSection(QByteArray &section, int year) const
{
    int k = 0;
    auto append = [&](quint32 type, int month, int day, int weekday) {
        if (k == Capacity)
            return;
        FieldTable::setNumber(section, inSection(holiday::kind), type, k);
        FieldTable::setNumber(section, inSection(holiday::month), quint32(month), k);
        FieldTable::setNumber(section, inSection(holiday::day), quint32(quint8(day)), k);
        if (type == NthWeekday)
            FieldTable::setNumber(section, inSection(holiday::weekday), quint32(weekday), k);
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
    FieldTable::setNumber(section, inSection(holiday::count), quint32(k));
}

} // namespace setup
