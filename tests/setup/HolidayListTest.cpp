// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/HolidayList.h"

#include "setup/Fields.h"

#include <QDate>

#include <tuple>

#include <gtest/gtest.h>

using setup::HolidayList;
constexpr int Base = setup::fields::holiday::base;

namespace {

constexpr int SectionLength = 1764;

// Entry k of a holiday section: kind, month, day or occurrence, weekday.
struct Entry
{
    quint32 kind;
    quint8 month, day, weekday;
    friend bool operator==(const Entry &, const Entry &) = default;
};

Entry entryAt(const QByteArray &section, int k)
{
    const char *e = section.constData() + 4 + 8 * k;
    return {quint32(quint8(e[0])) | quint32(quint8(e[1])) << 8, quint8(e[4]), quint8(e[5]),
            quint8(e[6])};
}

} // namespace

TEST(HolidayList, FirstWeekdayFollowsTheCalendarUntilMidCenturyAndTheRecorderAfter)
{
    for (int year : {2001, 2023, 2026, 2049}) {
        for (int month = 1; month <= 12; ++month) {
            EXPECT_EQ(HolidayList::firstWeekday(year, month), QDate(year, month, 1).dayOfWeek() % 7)
                << year << '/' << month;
        }
    }
    // From the middle of a century (and in January and February of its first
    // year) the recorder's century term puts the first one day earlier.
    for (const QDate &first : {QDate(2050, 3, 1), QDate(2000, 1, 1)})
        EXPECT_EQ(HolidayList::firstWeekday(first.year(), first.month()),
                  (first.dayOfWeek() + 6) % 7);
}

// 1 March 2023 is a Wednesday: a weekday before it in the first row counts
// from the second, so its occurrence is the row - 1, stored as one byte.
TEST(HolidayList, SectionHoldsFixedDatesFirstThenWeekdaysWithTheirOccurrence)
{
    HolidayList list;
    list.fixed[11][24] = true; // 25 December
    list.fixed[0][0] = true; // 1 January
    list.weekday[2][1][1] = true; // March, Monday, row 1
    list.weekday[2][1][0] = true; // March, Monday, row 0
    list.weekday[2][5][0] = true; // March, Friday, row 0
    QByteArray section(SectionLength, '\xA5');
    setup::SectionEdit edit(section, Base);
    list.toSection(edit, 2023);

    EXPECT_EQ(quint8(section[0]), 0xA5) << "the page's flag is not the list's";
    EXPECT_EQ(quint8(section[2]), 5);
    EXPECT_EQ(quint8(section[3]), 0xA5);
    const Entry expected[]
        = {{1, 1, 1, 0xA5}, {1, 12, 25, 0xA5}, {2, 3, 255, 1}, {2, 3, 0, 1}, {2, 3, 0, 5}};
    for (int k = 0; k < 5; ++k)
        EXPECT_EQ(entryAt(section, k), expected[k]) << k;
    EXPECT_EQ(quint8(section[4 + 8 * 5]), 0xA5) << "a byte past the list changed";

    EXPECT_EQ(HolidayList::fromSection({section, Base}, 2023), list);
}

// A count past the table reads the 220 entries the section holds; entries the
// flags cannot hold are left out; a short section ends the list.
TEST(HolidayList, BadSectionsAreReadAsFarAsTheyAreValid)
{
    QByteArray section(SectionLength, '\0');
    section[2] = char(250);
    for (int k = 0; k < HolidayList::Capacity; ++k) {
        char *e = section.data() + 4 + 8 * k;
        e[0] = 1;
        e[4] = char(1 + k % 14); // months 13 and 14 are no months
        e[5] = char(1 + k % 31);
    }
    const HolidayList read = HolidayList::fromSection({section, Base}, 2026);
    EXPECT_EQ(read.size(), 190);
    EXPECT_EQ(HolidayList::fromSection({section.first(4 + 8 * 10 - 1), Base}, 2026).size(), 9);

    // Weekday entries of no weekday (7) or past the sixth row are left out:
    // in March 2023 the first is a Wednesday, so Wednesday's occurrence 6 is row 6.
    QByteArray weekdays(SectionLength, '\0');
    weekdays[2] = 2;
    for (const auto &[k, occurrence, weekday] : {std::tuple {0, 0, 7}, std::tuple {1, 6, 3}}) {
        char *e = weekdays.data() + 4 + 8 * k;
        e[0] = 2;
        e[4] = 3;
        e[5] = char(occurrence);
        e[6] = char(weekday);
    }
    EXPECT_EQ(HolidayList::fromSection({weekdays, Base}, 2023).size(), 0);

    HolidayList full;
    for (auto &month : full.fixed)
        month.fill(true);
    setup::SectionEdit edit(section, Base);
    full.toSection(edit, 2026);
    EXPECT_EQ(quint8(section[2]), HolidayList::Capacity);
}
