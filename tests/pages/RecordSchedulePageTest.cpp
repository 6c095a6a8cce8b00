#include "pages/record/CRemoteRecordScheduleDlg.h"

#include "pages/common/ScheduleEntryEditor.h"
#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"
#include "tests/session/SessionHarness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using setup::FieldTable;
namespace schedule = setup::fields::schedule;
using Entry = ScheduleEntryEditor::Entry;

namespace {

constexpr int SectionOffset = 11032;
constexpr int SectionLength = 988;

// A record with `count` schedule entries; entry i runs from i:00 to i:30 on
// Monday in mode Motion for channel i + 1. Reserved bytes hold a pattern.
QByteArray scheduleRecord(quint32 count)
{
    QByteArray r = setup::FactoryDefaults::record().replace(SectionOffset, SectionLength,
                                                            pagetest::pattern(SectionLength));
    FieldTable::setNumber(r, schedule::count, count);
    for (int i = 0; i < 40; ++i) {
        FieldTable::setNumber(r, schedule::day, 2, i);
        FieldTable::setNumber(r, schedule::startHour, i % 24, i);
        FieldTable::setNumber(r, schedule::startMinute, 0, i);
        FieldTable::setNumber(r, schedule::endHour, i % 24, i);
        FieldTable::setNumber(r, schedule::endMinute, 30, i);
        FieldTable::setNumber(r, schedule::mode, 32, i);
        FieldTable::setNumber(r, schedule::channels, 1u << (i % 16), i);
    }
    return r;
}

QString line(const char *what, int entry)
{
    return QString::fromLatin1(what) + u' ' + QString::number(entry);
}

class SchedulePage : public ::testing::Test
{
protected:
    void SetUp() override
    {
        page.setSectionWriter([this](setup::Section section, const QByteArray &bytes) {
            written.push_back({section, bytes});
            return 1;
        });
        page.show();
    }

    QComboBox *day(int entry) const
    {
        return pagetest::named<QComboBox>(&page, line("Day", entry));
    }
    QCheckBox *mark(int entry) const
    {
        return pagetest::named<QCheckBox>(&page, line("Delete", entry));
    }
    QSpinBox *time(const char *which, int entry, const char *unit) const
    {
        return pagetest::named<QSpinBox>(&page,
                                         line(which, entry) + u' ' + QLatin1StringView(unit));
    }
    void click(const QString &button) { pagetest::button(&page, button)->click(); }
    std::vector<Entry> entries() const
    {
        std::vector<Entry> shown;
        for (auto *e : page.findChildren<ScheduleEntryEditor *>()) {
            if (e->inUse())
                shown.push_back(e->entry());
        }
        return shown;
    }

    SessionHarness window; // records the message boxes
    CRemoteRecordScheduleDlg page;
    std::vector<std::pair<setup::Section, QByteArray>> written;
};

} // namespace

// An installer enters a week's schedule, saves it and finds it again after
// reconnecting; the codes of ALL, HOL and M+C reach the recorder.
TEST_F(SchedulePage, WeekEnteredOnThePageIsStoredAndReadBackAfterReconnecting)
{
    const QByteArray initial = scheduleRecord(0);
    SimProcess sim({u"--channels"_s, u"8"_s}, initial);
    CWork *work = &window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());
    page.setSectionWriter([&work](setup::Section section, const QByteArray &bytes) {
        return work->writeSection(section, bytes);
    });
    page.load(work->mirror(), 8);
    EXPECT_EQ(page.entryCount(), 0);

    // The first entry's day is not the page's to change: it stays SUN.
    const struct
    {
        int day; // list item
        int start, end; // hours
        int mode; // list item
        QList<int> channels;
    } week[] = {{0, 0, 8, 4, {1}}, {8, 8, 18, 3, {1, 2, 8}}, {7, 18, 23, 2, {3}}};
    for (int n = 1; n <= 3; ++n) {
        click(u"Add"_s);
        const auto &w = week[n - 1];
        if (n > 1)
            day(n)->setCurrentIndex(w.day);
        time("Start Time", n, "Hour")->setValue(w.start);
        time("End Time", n, "Hour")->setValue(w.end);
        pagetest::named<QComboBox>(&page, line("Mode", n))->setCurrentIndex(w.mode);
        for (int c : w.channels)
            pagetest::named<QCheckBox>(&page, line("Channel", n) + u" Ch 0"_s + QString::number(c))
                ->click();
    }
    EXPECT_EQ(pagetest::named<QLineEdit>(&page, line("Channel", 2))->text(), u"1,2,8"_s);
    EXPECT_TRUE(page.isModified());
    click(u"Save"_s);
    EXPECT_FALSE(page.isModified());

    QByteArray expected = initial;
    FieldTable::setNumber(expected, schedule::count, 3);
    const quint32 days[] = {1, 127, 128}, modes[] = {33, 1, 48}, masks[] = {0x01, 0x83, 0x04};
    for (int i = 0; i < 3; ++i) {
        FieldTable::setNumber(expected, schedule::day, days[i], i);
        FieldTable::setNumber(expected, schedule::startHour, week[i].start, i);
        FieldTable::setNumber(expected, schedule::startMinute, 0, i);
        FieldTable::setNumber(expected, schedule::endHour, week[i].end, i);
        FieldTable::setNumber(expected, schedule::endMinute, 59, i);
        FieldTable::setNumber(expected, schedule::mode, modes[i], i);
        FieldTable::setNumber(expected, schedule::channels, masks[i], i);
    }
    EXPECT_TRUE(testsupport::waitFor([&] { return sim.storedRecord() == expected; }))
        << "the recorder holds another record";

    window.worker.reset();
    work = &window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());
    page.load(work->mirror(), 8);
    ASSERT_EQ(page.entryCount(), 3);
    EXPECT_EQ(day(2)->currentText(), u"ALL"_s);
    EXPECT_EQ(day(3)->currentText(), u"HOL"_s);
    EXPECT_EQ(pagetest::named<QLineEdit>(&page, line("Channel", 2))->text(), u"1,2,8"_s);
    window.worker.reset();
}

// Only the first entry's times are checked, strictly start before end.
TEST_F(SchedulePage, SaveChecksTheFirstEntrysTimesOnly)
{
    const struct
    {
        int startHour, startMinute, endHour, endMinute;
        bool secondReversed;
        bool saved;
    } cases[] = {
        {10, 0, 10, 0, false, false},
        {9, 59, 10, 0, true, true},
        {11, 0, 10, 0, false, false},
    };
    for (const auto &c : cases) {
        page.load(scheduleRecord(2), 16);
        window.messages.clear();
        written.clear();
        time("Start Time", 1, "Hour")->setValue(c.startHour);
        time("Start Time", 1, "Minute")->setValue(c.startMinute);
        time("End Time", 1, "Hour")->setValue(c.endHour);
        time("End Time", 1, "Minute")->setValue(c.endMinute);
        if (c.secondReversed)
            time("Start Time", 2, "Hour")->setValue(23);
        click(u"Save"_s);
        EXPECT_EQ(written.size(), c.saved ? 1u : 0u) << c.startHour << ':' << c.startMinute;
        EXPECT_EQ(window.messages,
                  c.saved ? QStringList()
                          : QStringList {u"Set Time Error!!\nCheck Line Number : 1"_s});
        EXPECT_EQ(page.isModified(), !c.saved);
    }
}

TEST_F(SchedulePage, DeleteDropsTheTickedEntriesAndResetsTheFreedSlots)
{
    page.load(scheduleRecord(9), 16);
    click(u"Delete"_s);
    EXPECT_EQ(window.messages, QStringList {u"You can delete only the entry that is checked."_s});
    EXPECT_EQ(page.entryCount(), 9);

    click(u"Next"_s);
    EXPECT_EQ(page.screen(), 2);
    mark(9)->click();
    click(u"Previous"_s);
    mark(2)->click();
    click(u"Delete"_s);
    EXPECT_EQ(page.entryCount(), 7);
    EXPECT_EQ(page.screen(), 1);
    const std::vector<Entry> kept = entries();
    ASSERT_EQ(kept.size(), 7u);
    const int hours[] = {0, 2, 3, 4, 5, 6, 7};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(kept[i].startHour, quint32(hours[i])) << i;
    for (auto *e : page.findChildren<ScheduleEntryEditor *>()) {
        if (!e->inUse()) {
            EXPECT_EQ(e->entry(), Entry {});
        }
    }
    EXPECT_FALSE(mark(1)->isChecked());

    page.save();
    QByteArray expected = scheduleRecord(9).mid(SectionOffset, SectionLength);
    expected[0] = 7;
    // Entries move up; the reserved bytes stay with their slot.
    for (int i = 1; i < 7; ++i) {
        const int to = 4 + 24 * i, from = 4 + 24 * (i + 1);
        expected.replace(to, 20, expected.mid(from, 20));
    }
    ASSERT_EQ(written.size(), 1u);
    EXPECT_EQ(written[0].first, setup::Section::Schedule);
    EXPECT_EQ(written[0].second.first(4 + 24 * 7), expected.first(4 + 24 * 7));
}

TEST_F(SchedulePage, SelectAllTicksEntriesFromTheSecondAndAddStopsAtForty)
{
    page.load(scheduleRecord(5), 16);
    mark(1)->click();
    mark(1)->click();
    pagetest::named<QCheckBox>(&page, u"Select All"_s)->click();
    EXPECT_FALSE(mark(1)->isChecked());
    for (int n = 2; n <= 5; ++n)
        EXPECT_TRUE(mark(n)->isChecked()) << n;
    EXPECT_FALSE(day(1)->isEnabled());

    // Added entries take an emptied slot's values: SUN, 00:00-23:59, Alarm.
    page.load(scheduleRecord(0), 16);
    click(u"Add"_s);
    EXPECT_EQ(entries().front(), Entry {});
    EXPECT_EQ(day(1)->currentText(), u"SUN"_s);
    for (int n = 2; n <= 45; ++n)
        click(u"Add"_s);
    EXPECT_EQ(page.entryCount(), 40);
    EXPECT_EQ(page.screen(), 5);
    EXPECT_TRUE(day(33)->isEnabled());
}

// A count past the list's room shows the forty entries the section holds.
TEST_F(SchedulePage, CountPastTheRoomShowsFortyAndIsKept)
{
    QByteArray record = scheduleRecord(0);
    FieldTable::setNumber(record, schedule::count, 99);
    FieldTable::setNumber(record, schedule::day, 3, 0); // no list item
    page.load(record, 16);
    EXPECT_EQ(page.entryCount(), 40);
    EXPECT_EQ(day(1)->currentIndex(), -1);
    page.save();
    ASSERT_EQ(written.size(), 1u);
    EXPECT_EQ(written[0].second, record.mid(SectionOffset, SectionLength));
}
