// SPDX-License-Identifier: GPL-3.0-or-later

// The RECORD pages: profiles, schedule and holidays, alone and against
// recorder-sim.

#include "pages/common/CRemoteChannelSel.h"
#include "pages/common/ScheduleEntryEditor.h"
#include "pages/record/CRemoteRecordCopySettingDlg.h"
#include "pages/record/CRemoteRecordDelAllHolidayDlg.h"
#include "pages/record/CRemoteRecordHolidayDlg.h"
#include "pages/record/CRemoteRecordScheduleDlg.h"
#include "pages/record/CRemoteRecordSetHolidayDlg.h"
#include "pages/record/CRemoteRecordSetupDlg.h"
#include "setup/Fields.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::FieldTable;
using setup::Section;
namespace record = setup::fields::record;
namespace schedule = setup::fields::schedule;
using Mode = CRemoteRecordSetupDlg::Mode;
using Entry = ScheduleEntryEditor::Entry;

namespace {

// A record whose RECORD block has a pattern in every byte the page does not
// own. Every profile is 704*240 (width 1, height 1), "Normal" quality and
// frame-rate index (mode + channel) % 6; Pre-Event is on for even channels,
// type M+A (3) and dwell 2 s.
QByteArray recordWithProfiles()
{
    QByteArray r = pagetest::patterned(Section::RecordSetup);
    for (int m = 0; m < 4; ++m) {
        for (int c = 0; c < 16; ++c) {
            FieldTable::setNumber(r, record::widthCode, 1, m, c);
            FieldTable::setNumber(r, record::heightCode, 1, m, c);
            FieldTable::setNumber(r, record::frameRate, (m + c) % 6, m, c);
            FieldTable::setNumber(r, record::frameRateCopy, (m + c) % 6, m, c);
            FieldTable::setNumber(r, record::quality, 0xFF02, m, c);
            FieldTable::setNumber(r, record::qualityCopy, 0xFF02, m, c);
        }
    }
    for (int c = 0; c < 16; ++c) {
        FieldTable::setNumber(r, record::preEvent, c % 2 == 0, Mode::PreEvent, c);
        FieldTable::setNumber(r, record::eventType, 3, Mode::PreEvent, c);
        FieldTable::setNumber(r, record::dwell, 2, Mode::PreEvent, c);
    }
    return r;
}

// The operator picks `item` in `list`.
void choose(QComboBox *list, int item)
{
    list->setCurrentIndex(item);
    Q_EMIT list->activated(item);
}

class RecordSetupPage : public ::testing::Test
{
protected:
    void SetUp() override { page.show(); }

    QComboBox *list(const setup::FieldInfo &field, int mode, int channel) const
    {
        return page.binder().widget<QComboBox>(field, mode, channel - 1);
    }
    // The column header list of the mode on display.
    QComboBox *header(const QString &name) const
    {
        for (QComboBox *box : page.findChildren<QComboBox *>()) {
            // The mode shown before the column's name.
            if (box->accessibleName().endsWith(u' ' + name) && box->isVisible())
                return box;
        }
        return nullptr;
    }
    QCheckBox *preEvent(int channel) const
    {
        return page.binder().widget<QCheckBox>(record::preEvent, Mode::PreEvent, channel - 1);
    }
    void setMode(int mode) { choose(named<QComboBox>(&page, u"Record Mode"_s), mode); }

    SessionHarness window;
    CRemoteRecordSetupDlg page;
};

} // namespace

// A PAL recorder shows PAL lists and the page stores indexes. The whole
// block goes out as category 0: the rows past the channel count, the bytes
// no list owns, the other modes and the schedule and holidays as the session
// holds them at the moment of the save all arrive unchanged.
TEST_F(RecordSetupPage, PalListsAndAHeaderQualityReachTheRecorderWithEverythingElseKept)
{
    QByteArray initial = recordWithProfiles();
    FieldTable::setNumber(initial, record::frameRate, 5, Mode::Normal, 0);
    SimProcess sim({u"--channels"_s, u"4"_s, u"--video"_s, u"pal"_s}, initial);
    CWork *work = pagetest::attach(window, sim, page);
    ASSERT_TRUE(work);
    page.setRecordSource([work] { return work->mirror(); });
    EXPECT_EQ(list(record::resolution, Mode::Normal, 1)->currentText(), u"704*288"_s);
    EXPECT_EQ(list(record::frameRates, Mode::Normal, 1)->currentText(), u"25"_s);
    EXPECT_EQ(header(u"Resolution"_s)->itemText(4), u"352*288"_s);
    EXPECT_FALSE(list(record::qualities, Mode::Normal, 5)->isVisibleTo(&page));

    // Another page saves the schedule after this one was filled.
    QByteArray schedule = pagetest::slice(work->mirror(), Section::Schedule);
    schedule[0] = 3;
    ASSERT_TRUE(work->writeSection(Section::Schedule, schedule));

    setMode(Mode::Event);
    ASSERT_EQ(header(u"Quality"_s)->itemText(2), u"High"_s);
    choose(header(u"Quality"_s), 2);
    EXPECT_EQ(header(u"Quality"_s)->currentIndex(), 0);
    EXPECT_TRUE(page.isModified());
    pagetest::button(&page, u"Save"_s)->click();
    EXPECT_FALSE(page.isModified());

    QByteArray expected = pagetest::withSection(initial, Section::Schedule, schedule);
    // Every shown profile goes out whole: the frame rate set above alone gets its copy.
    FieldTable::setNumber(expected, record::frameRateCopy, 5, Mode::Normal, 0);
    for (int c = 0; c < 4; ++c) {
        FieldTable::setNumber(expected, record::quality, 0xFF01, Mode::Event, c);
        FieldTable::setNumber(expected, record::qualityCopy, 0xFF01, Mode::Event, c);
    }
    EXPECT_TRUE(testsupport::waitFor([&] {
        return pagetest::slice(sim.storedRecord(), Section::RecordSetup)
               == pagetest::slice(expected, Section::RecordSetup);
    })) << "the recorder holds another RECORD block";
    window.worker.reset();

    // Without a session the lists are NTSC's.
    page.load(initial, 16);
    EXPECT_EQ(list(record::resolution, Mode::Normal, 1)->currentText(), u"704*240"_s);

    // 352*480: half width (2), full height (0); the frame rate in both copies.
    choose(list(record::resolution, Mode::Normal, 2), 2);
    choose(list(record::frameRates, Mode::Normal, 2), 4);
    page.gather();
    EXPECT_EQ(pagetest::number(page, record::widthCode, Mode::Normal, 1), 2u);
    EXPECT_EQ(pagetest::number(page, record::heightCode, Mode::Normal, 1), 0u);
    EXPECT_EQ(pagetest::number(page, record::frameRate, Mode::Normal, 1), 4u);
    EXPECT_EQ(pagetest::number(page, record::frameRateCopy, Mode::Normal, 1), 4u);
}

// In Pre-Event a channel's lists follow its check box; a header value the
// channel lists do not offer (Dwell Time past 5 s) leaves them empty, and the
// stored dwell stays. Switching modes shows the values afresh: Save disabled.
// Save writes every shown profile whole: second copies equal to the first,
// resolution codes in their own form; later channels keep their bytes.
TEST_F(RecordSetupPage, PreEventRowsFollowTheirCheckBoxAndDwellHeaderPastFiveEmptiesTheLists)
{
    QByteArray initial = recordWithProfiles();
    for (int c : {0, 4}) {
        FieldTable::setNumber(initial, record::widthCode, 7, Mode::Normal, c);
        FieldTable::setNumber(initial, record::heightCode, 9, Mode::Normal, c);
        FieldTable::setNumber(initial, record::frameRateCopy, 3, Mode::Normal, c);
        FieldTable::setNumber(initial, record::qualityCopy, 0x1234, Mode::Normal, c);
        FieldTable::setNumber(initial, record::quality, 0xFF04, Mode::Event, c);
    }
    page.setSectionWriter([](Section, const QByteArray &) { return 1; });
    page.load(initial, 4);
    setMode(Mode::PreEvent);
    EXPECT_TRUE(list(record::eventType, Mode::PreEvent, 1)->isEnabled());
    EXPECT_FALSE(list(record::eventType, Mode::PreEvent, 2)->isEnabled());
    EXPECT_EQ(list(record::eventType, Mode::PreEvent, 1)->currentText(), u"M+A"_s);
    QCheckBox *all = named<QCheckBox>(&page, u"Pre-Event"_s);
    EXPECT_FALSE(all->isChecked());

    preEvent(2)->click();
    EXPECT_TRUE(list(record::dwell, Mode::PreEvent, 2)->isEnabled());
    EXPECT_TRUE(page.isModified());
    all->click();
    EXPECT_TRUE(preEvent(16)->isChecked());
    EXPECT_TRUE(all->isChecked());

    setMode(Mode::Panic);
    EXPECT_FALSE(page.isModified());
    setMode(Mode::PreEvent);
    EXPECT_TRUE(preEvent(2)->isChecked()) << "a mode switch lost the page's values";

    ASSERT_EQ(header(u"Dwell Time"_s)->itemText(7), u"7 Sec"_s);
    choose(header(u"Dwell Time"_s), 7);
    EXPECT_EQ(list(record::dwell, Mode::PreEvent, 1)->currentIndex(), -1);
    ASSERT_EQ(header(u"Type"_s)->itemText(1), u"M"_s);
    choose(header(u"Type"_s), 1);
    page.save();
    QByteArray expected = pagetest::slice(initial, Section::RecordSetup);
    for (int c = 0; c < 4; ++c) {
        const int at = 640 * Mode::PreEvent + 40 * c;
        expected[at] = 1;
        expected[at + 32] = 2; // M
    }
    setup::SectionEdit saved = page.edit(expected);
    saved.setNumber(record::widthCode, 2, Mode::Normal, 0);
    saved.setNumber(record::heightCode, 1, Mode::Normal, 0);
    saved.setNumber(record::frameRateCopy, 0, Mode::Normal, 0);
    saved.setNumber(record::qualityCopy, 0xFF02, Mode::Normal, 0);
    saved.setNumber(record::qualityCopy, 0xFF04, Mode::Event, 0);
    EXPECT_EQ(page.sectionBuffer(), expected);

    pagetest::button(&page, u"Default"_s)->click();
    EXPECT_TRUE(page.isModified());
}

TEST_F(RecordSetupPage, CopySettingsCopiesTheTickedColumnsOfTheShownModeOnly)
{
    page.load(recordWithProfiles(), 16);
    setMode(Mode::Event);
    choose(list(record::resolution, Mode::Event, 1), 3);
    choose(list(record::frameRates, Mode::Event, 1), 0);
    pagetest::button(&page, u"Copy Settings"_s)->click();
    auto *dialog = page.findChild<CRemoteRecordCopySettingDlg *>();
    ASSERT_TRUE(dialog && dialog->isVisible());
    named<QCheckBox>(dialog, u"Resolution"_s)->setChecked(true);
    named<QCheckBox>(dialog, u"To Ch 03"_s)->setChecked(true);
    pagetest::button(dialog, u"OK"_s)->click();

    EXPECT_EQ(list(record::resolution, Mode::Event, 3)->currentText(), u"352*240"_s);
    EXPECT_EQ(list(record::frameRates, Mode::Event, 3)->currentIndex(), 3);
    EXPECT_EQ(list(record::resolution, Mode::Event, 2)->currentText(), u"704*240"_s);
    EXPECT_EQ(list(record::resolution, Mode::Normal, 3)->currentText(), u"704*240"_s);
}

namespace {

// A record with `count` schedule entries; entry i runs from i:00 to i:30 on
// Monday in mode Motion for channel i + 1. Reserved bytes hold a pattern.
QByteArray scheduleRecord(quint32 count)
{
    QByteArray r = pagetest::patterned(Section::Schedule);
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
        page.setSectionWriter([](Section, const QByteArray &) { return 1; });
        page.show();
    }

    QComboBox *day(int entry) const { return named<QComboBox>(&page, line("Day", entry)); }
    QCheckBox *mark(int entry) const { return named<QCheckBox>(&page, line("Delete", entry)); }
    QSpinBox *time(const char *which, int entry, const char *unit) const
    {
        return named<QSpinBox>(&page, line(which, entry) + u' ' + QLatin1StringView(unit));
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
};

} // namespace

// An installer enters a week's schedule, saves it and finds it again after
// reconnecting; the codes of ALL, HOL and M+C reach the recorder.
TEST_F(SchedulePage, WeekEnteredOnThePageIsStoredAndReadBackAfterReconnecting)
{
    const QByteArray initial = scheduleRecord(0);
    SimProcess sim({u"--channels"_s, u"8"_s}, initial);
    ASSERT_TRUE(pagetest::attach(window, sim, page));
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
        named<QComboBox>(&page, line("Mode", n))->setCurrentIndex(w.mode);
        named<QToolButton>(&page, line("Channel", n) + u" ..."_s)->click();
        CRemoteChannelSel *channels = nullptr;
        for (auto *shown : page.window()->findChildren<CRemoteChannelSel *>())
            channels = shown->isVisible() ? shown : channels;
        ASSERT_NE(channels, nullptr);
        for (int c : w.channels)
            named<QCheckBox>(channels, u"Ch 0"_s + QString::number(c))->click();
        channels->accept();
    }
    EXPECT_EQ(named<QLineEdit>(&page, line("Channel", 2))->text(), u"1,2,8"_s);
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

    ASSERT_TRUE(pagetest::attach(window, sim, page));
    ASSERT_EQ(page.entryCount(), 3);
    EXPECT_EQ(day(2)->currentText(), u"ALL"_s);
    EXPECT_EQ(day(3)->currentText(), u"HOL"_s);
    EXPECT_EQ(named<QLineEdit>(&page, line("Channel", 2))->text(), u"1,2,8"_s);
    window.worker.reset();
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
    QByteArray expected = pagetest::slice(scheduleRecord(9), Section::Schedule);
    expected[0] = 7;
    // Entries move up; the reserved bytes stay with their slot.
    for (int i = 1; i < 7; ++i) {
        const int to = 4 + 24 * i, from = 4 + 24 * (i + 1);
        expected.replace(to, 20, expected.mid(from, 20));
    }
    EXPECT_FALSE(page.isModified());
    EXPECT_EQ(page.sectionBuffer().first(4 + 24 * 7), expected.first(4 + 24 * 7));
}

TEST_F(SchedulePage, SelectAllTicksEntriesFromTheSecondAndFortyEntriesAtMost)
{
    page.load(scheduleRecord(5), 16);
    mark(1)->click();
    mark(1)->click();
    named<QCheckBox>(&page, u"Select All"_s)->click();
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

    // A count past the room shows the forty entries the section holds and is kept.
    QByteArray record = scheduleRecord(0);
    FieldTable::setNumber(record, schedule::count, 99);
    FieldTable::setNumber(record, schedule::day, 3, 0); // no list item
    page.load(record, 16);
    EXPECT_EQ(page.entryCount(), 40);
    EXPECT_EQ(day(1)->currentIndex(), -1);
    page.save();
    EXPECT_EQ(page.sectionBuffer(), pagetest::slice(record, Section::Schedule));
}

namespace {

constexpr int HolidayOffset = 12020;

QByteArray holidaySlice(const QByteArray &record)
{
    return pagetest::slice(record, Section::Holiday);
}

} // namespace

// Fixed dates picked on the calendar and weekday holidays picked in the
// dialog reach the recorder in the stored order and forms, come back after
// reconnecting, Delete All clears them once confirmed and Default brings
// the factory holidays back.
TEST(HolidayPage, HolidaysPickedOnTheCalendarsAreStoredAndReadBack)
{
    SessionHarness window;
    QByteArray initial = pagetest::patterned(Section::Holiday);
    initial[HolidayOffset] = 1; // holidays in use
    initial[HolidayOffset + 2] = 0;
    SimProcess sim({}, initial);
    CRemoteRecordHolidayDlg page;
    page.setYear(2023); // 1 March 2023 is a Wednesday
    page.show();
    ASSERT_TRUE(pagetest::attach(window, sim, page));
    EXPECT_TRUE(named<QCheckBox>(&page, u"Use Holidays"_s)->isChecked());

    auto *month = named<QComboBox>(&page, u"Month"_s);
    month->setCurrentIndex(11);
    named<QToolButton>(&page, u"December 25"_s)->click();
    month->setCurrentIndex(0);
    named<QToolButton>(&page, u"January 1"_s)->click();
    EXPECT_TRUE(page.isModified());

    month->setCurrentIndex(2);
    pagetest::button(&page, u"Select Day Of Week"_s)->click();
    auto *dialog = page.findChild<CRemoteRecordSetHolidayDlg *>();
    ASSERT_TRUE(dialog && dialog->isVisible());
    EXPECT_EQ(named<QCheckBox>(dialog, u"March / 1st / Wednesday"_s)->text(), u"1"_s);
    for (const QString &cell :
         {u"March / 2nd / Monday"_s, u"March / 1st / Monday"_s, u"March / 1st / Friday"_s})
        named<QCheckBox>(dialog, cell)->click();
    pagetest::button(dialog, u"OK"_s)->click();
    EXPECT_EQ(named<QListWidget>(&page, u"Holiday"_s)->count(), 5);

    pagetest::button(&page, u"Save"_s)->click();
    EXPECT_FALSE(page.isModified());
    QByteArray expected = holidaySlice(initial);
    expected[2] = 5;
    const char entries[][4]
        = {{1, 1, 1, 0}, {1, 12, 25, 0}, {2, 3, char(255), 1}, {2, 3, 0, 1}, {2, 3, 0, 5}};
    for (int k = 0; k < 5; ++k) {
        QByteArray entry = QByteArray::fromRawData(entries[k], 1) + QByteArray(3, '\0')
                           + QByteArray(entries[k] + 1, 2);
        if (entries[k][0] == 2)
            entry += entries[k][3];
        expected.replace(4 + 8 * k, entry.size(), entry);
    }
    EXPECT_TRUE(testsupport::waitFor([&] { return holidaySlice(sim.storedRecord()) == expected; }))
        << "the recorder holds other holidays";

    ASSERT_TRUE(pagetest::attach(window, sim, page));
    month->setCurrentIndex(0);
    EXPECT_TRUE(named<QToolButton>(&page, u"January 1"_s)->isChecked());
    EXPECT_EQ(named<QListWidget>(&page, u"Holiday"_s)->count(), 5);

    pagetest::button(&page, u"Delete All"_s)->click();
    auto *confirm = page.findChild<CRemoteRecordDelAllHolidayDlg *>();
    ASSERT_TRUE(confirm && confirm->isVisible());
    confirm->button(QMessageBox::Ok)->click();
    EXPECT_EQ(named<QListWidget>(&page, u"Holiday"_s)->count(), 0);
    EXPECT_TRUE(page.isModified());

    // Default shows the factory holidays and Save writes them.
    page.setDefaultSource([] { return setup::FactoryDefaults::record(); });
    pagetest::button(&page, u"Default"_s)->click();
    EXPECT_EQ(named<QListWidget>(&page, u"Holiday"_s)->count(), 2);
    pagetest::button(&page, u"Save"_s)->click();
    // Two entries of 8 bytes after the 4 of the header; reserved bytes keep the pattern.
    const QByteArray factory = holidaySlice(setup::FactoryDefaults::record());
    EXPECT_TRUE(testsupport::waitFor([&] {
        const QByteArray stored = holidaySlice(sim.storedRecord());
        return stored[2] == 2 && stored.mid(4, 6) == factory.mid(4, 6)
               && stored.mid(12, 6) == factory.mid(12, 6);
    }));
    window.worker.reset();
}
