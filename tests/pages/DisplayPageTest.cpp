// SPDX-License-Identifier: GPL-3.0-or-later

// The DISPLAY pages: what each has besides its bound fields, through the
// real widgets, and their writes against recorder-sim.

#include "pages/common/BitGroupEditor.h"
#include "pages/common/CRemoteChannelSel_Spot.h"
#include "pages/display/CRemoteDisplayDateTimeDlg.h"
#include "pages/display/CRemoteDisplayEventDlg.h"
#include "pages/display/CRemoteDisplayIntervalDlg.h"
#include "pages/display/CRemoteDisplayOSDDlg.h"
#include "pages/display/CRemoteDisplayOSDMargin.h"
#include "setup/Fields.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::FieldTable;
namespace fields = setup::fields;

namespace {

// Hands the page's writes to `work` and notes each as "offset+length".
CSetupPage::SectionWriter recordingWriter(CWork *work, QStringList &writes)
{
    return [work, &writes](setup::Section section, const QByteArray &bytes) {
        writes.append(
            u"%1+%2"_s.arg(setup::SetupRecordMap::section(section).offset).arg(bytes.size()));
        return work ? work->writeSection(section, bytes) : 1;
    };
}

// Picks item `index` of `list` with the keyboard, as an operator does.
void pick(QComboBox *list, int index)
{
    ASSERT_TRUE(list && index >= 0 && index < list->count());
    list->setCurrentIndex(index > 0 ? index - 1 : 1);
    QTest::keyClick(list, index > 0 ? Qt::Key_Down : Qt::Key_Up);
}

QByteArray record()
{
    return setup::FactoryDefaults::record();
}

QComboBox *rule(const QWidget *page, const char *row, const char *column)
{
    return named<QComboBox>(page, QString::fromLatin1(row) + u' ' + QLatin1StringView(column));
}

class DateTimePage : public ::testing::Test
{
protected:
    void SetUp() override { page.show(); }

    QString clock() const { return named<QLabel>(&page, u"Date/Time"_s)->text(); }

    SessionHarness window; // records the message boxes
    CRemoteDisplayDateTimeDlg page;
};

} // namespace

TEST_F(DateTimePage, PickingAZoneTakesItsOffsetAndDefaultRule)
{
    const struct
    {
        int zone;
        qint32 offset;
        std::array<quint16, 10> rule;
        bool dst;
    } cases[] = {
        {75, 570, {10, 1, 0, 0, 2, 4, 1, 0, 0, 3}, true}, // (GMT+09:30) Adelaide
        {0, -720, {}, false}, // no daylight saving: the rule is cleared
        {60, 345, {}, false}, // Kathmandu
        {47, 180, {4, 0, 0, 1, 3, 10, 0, 0, 1, 4}, true}, // Baghdad, fixed dates
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.zone);
        page.load(record(), 16);
        auto *zone = named<QComboBox>(&page, u"Time Zone"_s);
        pick(zone, c.zone);
        EXPECT_EQ(named<QCheckBox>(&page, u"DST Time"_s)->isChecked(), c.dst);
        EXPECT_TRUE(page.isModified());
        page.gather();
        EXPECT_EQ(pagetest::number(page, fields::dateTime::timeZone), quint32(c.zone));
        EXPECT_EQ(qint32(pagetest::number(page, fields::dateTime::utcOffset)), c.offset);
        for (std::size_t k = 0; k < c.rule.size(); ++k)
            EXPECT_EQ(pagetest::number(page, fields::dst::all[k]), c.rule[k]) << k;
    }
}

TEST_F(DateTimePage, RuleWithEndTooCloseToTheStartMovesTheEndWithAMessage)
{
    // Start and end: month, week, weekday, hour; then whether the check speaks.
    const struct
    {
        int start[4];
        int end[4];
        int endHour;
        bool message;
    } cases[] = {
        {{3, 5, 0, 2}, {3, 5, 0, 3}, 3, true},    {{3, 5, 0, 5}, {3, 5, 0, 1}, 6, true},
        {{3, 5, 0, 24}, {3, 5, 0, 24}, 24, true}, {{3, 5, 0, 2}, {3, 5, 0, 4}, 4, false},
        {{3, 5, 0, 2}, {10, 5, 0, 3}, 3, false},
    };
    const char *const columns[] = {"Month", "Week", "Day", "Hour"};
    for (const auto &c : cases) {
        page.load(record(), 16);
        window.messages.clear();
        named<QCheckBox>(&page, u"DST Time"_s)->click();
        for (int k = 0; k < 4; ++k) {
            QComboBox *start = rule(&page, "DST Start Time", columns[k]);
            start->setCurrentIndex(start->findData(c.start[k]));
            QComboBox *end = rule(&page, "DST End Time", columns[k]);
            end->setCurrentIndex(end->findData(c.end[k]));
        }
        // The operator's last choice runs the check.
        QComboBox *endHour = rule(&page, "DST End Time", "Hour");
        pick(endHour, endHour->findData(c.end[3]));
        EXPECT_EQ(rule(&page, "DST End Time", "Hour")->currentData().toInt(), c.endHour);
        EXPECT_EQ(window.messages.contains(u"Start and End month Error"_s), c.message);
    }
}

TEST_F(DateTimePage, ClockShowsTheRecordersTimeInTheChosenFormats)
{
    RecorderTime now {2026, 3, 0, 5, 13, 4, 9, 0};
    page.setClock([&now] { return std::optional(now); }, [](const RecorderTime &) { return 0; });
    page.load(record(), 16);
    const struct
    {
        int dateFormat;
        int timeFormat;
        int day;
        QString text;
    } cases[] = {
        {0, 0, 5, u"2026 / 03 / 05  13 : 04 : 09"_s},
        {0, 0, 15, u"2026 / 03 / 15  13 : 04 : 09"_s},
        {1, 1, 5, u"03 / 05 / 2026  PM 01 : 04 : 09"_s},
        {1, 1, 15, u"03 / 15 / 2026  PM 01 : 04 : 09"_s},
        {2, 0, 5, u"05 / 03 / 2026  13 : 04 : 09"_s},
        {2, 1, 15, u"15 / 03 / 2026  PM 01 : 04 : 09"_s},
    };
    for (const auto &c : cases) {
        now.day = quint16(c.day);
        page.load(record(), 16); // a new answer
        named<QComboBox>(&page, u"Display Format"_s)->setCurrentIndex(c.dateFormat);
        named<QComboBox>(&page, u"Date/Time Format"_s)->setCurrentIndex(c.timeFormat);
        EXPECT_TRUE(page.clockText().startsWith(c.text.chopped(2)))
            << page.clockText().toStdString();
    }
    EXPECT_EQ(named<QComboBox>(&page, u"Hour"_s)->itemText(0), u"AM 00"_s);

    // The session counts the 27th of January into "February 0"; the page
    // counts on into the 28th of January.
    named<QComboBox>(&page, u"Date/Time Format"_s)->setCurrentIndex(0);
    now = {2026, 2, 0, 30, 10, 0, 0, 0}; // no such date: no clock
    page.load(record(), 16);
    EXPECT_EQ(clock(), QString());
    now = {2026, 1, 0, 27, 23, 59, 59, 0};
    page.load(record(), 16);
    ASSERT_EQ(clock(), u"2026 / 01 / 27  23 : 59 : 59"_s);
    RecorderClock::tick(now);
    ASSERT_EQ(now.day, 0);
    EXPECT_TRUE(
        testsupport::waitFor([&] { return clock() == u"2026 / 01 / 28  00 : 00 : 00"_s; }, 3000))
        << clock().toStdString();
}

TEST_F(DateTimePage, ApplySetsTheRecordersClockThenSendsTheSettingsAndSaveSendsBoth)
{
    SimProcess sim;
    CWork &work = window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());
    ASSERT_TRUE(testsupport::waitFor([&] { return work.clockValid(); }));
    QStringList writes;
    page.setSectionWriter(recordingWriter(&work, writes));
    page.setClock(
        [&work] { return work.clockValid() ? std::optional(work.clock()) : std::nullopt; },
        [&work, &writes](const RecorderTime &time) {
            writes.append(u"time-set"_s);
            return work.dateTimeCommand(2, time);
        });
    page.load(work.mirror(), int(window.record.channelCount));

    pick(named<QComboBox>(&page, u"Time Zone"_s), 75);
    const std::pair<const char *, int> time[]
        = {{"Year", 2030 - 2000}, {"Month", 5},   {"Date", 14},
           {"Hour", 10},          {"Minute", 20}, {"Second", 30}};
    for (const auto &[selector, index] : time)
        pick(named<QComboBox>(&page, QString::fromLatin1(selector)), index);
    pagetest::button(&page, u"Apply"_s)->click();
    EXPECT_EQ(writes, (QStringList {u"time-set"_s, u"604+32"_s}));
    // The recorder answers with its new time, and the page shows it.
    EXPECT_TRUE(testsupport::waitFor([&] {
        return clock().startsWith(u"2030 / 06 / 15  10 : 2"_s);
    })) << clock().toStdString();
    EXPECT_TRUE(testsupport::waitFor([&] {
        return FieldTable::number(sim.storedRecord(), fields::dateTime::utcOffset) == 570;
    }));
    EXPECT_TRUE(page.isModified()) << "the rule of the zone is not saved yet";

    writes.clear();
    pagetest::button(&page, u"Save"_s)->click();
    EXPECT_EQ(writes, (QStringList {u"604+32"_s, u"636+20"_s}));
    EXPECT_FALSE(page.isModified());
    EXPECT_TRUE(testsupport::waitFor(
        [&] { return FieldTable::number(sim.storedRecord(), fields::dst::startMonth) == 10; }));
    EXPECT_EQ(sim.storedRecord().mid(604, 52), work.mirror().mid(604, 52));
}

TEST(OsdPage, SelectAllFollowsTheRecordersCountOfItemBits)
{
    CRemoteDisplayOSDDlg page;
    const struct
    {
        quint32 live;
        quint32 playback;
        bool liveAll;
        bool playbackAll;
    } cases[] = {
        {0x1F, 0x0F, true, true},
        {0x3F, 0x1F, false, false}, // a sixth set bit: not all
        {0x2F, 0x17, true, true}, // five of bits 0-5 (four of 0-4) set, though not the first five
        {0x4F, 0x07, false, false},
    };
    for (const auto &c : cases) {
        QByteArray r = record();
        FieldTable::setNumber(r, fields::osd::liveItems, c.live);
        FieldTable::setNumber(r, fields::osd::playbackItems, c.playback);
        page.load(r, 16);
        EXPECT_EQ(named<QCheckBox>(&page, u"Live Select All"_s)->isChecked(), c.liveAll) << c.live;
        EXPECT_EQ(named<QCheckBox>(&page, u"Play Back Select All"_s)->isChecked(), c.playbackAll)
            << c.playback;
        for (int bit = 0; bit < 5; ++bit)
            EXPECT_EQ(named<QCheckBox>(
                          &page, u"Live "_s + QLatin1StringView(fields::values::osdItems[bit].name))
                          ->isChecked(),
                      bool(c.live & (1u << bit)));
    }
    // Select All sets the item bits and keeps the others.
    named<QCheckBox>(&page, u"Live Select All"_s)->click();
    page.gather();
    EXPECT_EQ(pagetest::number(page, fields::osd::liveItems), 0x5Fu);
    EXPECT_TRUE(page.isModified());
}

TEST(OsdPage, TimeOutListAndMarginDialog)
{
    CRemoteDisplayOSDDlg page;
    const std::pair<quint32, int> cases[] = {{0xFFFFFFFF, 0}, {3600, 8}, {45, 8}, {10, 1}, {7, 1}};
    for (const auto &[stored, shown] : cases) {
        QByteArray r = record();
        FieldTable::setNumber(r, fields::osd::timeOut, stored);
        page.load(r, 16);
        EXPECT_EQ(named<QComboBox>(&page, u"Time Out"_s)->currentIndex(), shown)
            << stored; // unknown: as it was
    }

    page.load(record(), 16);
    pagetest::button(&page, u"Margin"_s)->click();
    CRemoteDisplayOSDMargin *dialog = page.marginDialog();
    ASSERT_TRUE(dialog->isVisible());
    auto *top = named<QSpinBox>(dialog, u"Top"_s);
    const int before = top->value();
    top->setValue(before + 5);
    pagetest::button(dialog, u"Cancel"_s)->click();
    EXPECT_EQ(top->value(), before);
    EXPECT_FALSE(page.isModified());

    pagetest::button(&page, u"Margin"_s)->click();
    top->setValue(before + 5);
    pagetest::button(dialog, u"OK"_s)->click();
    EXPECT_TRUE(page.isModified());
    page.gather();
    EXPECT_EQ(quint8(page.sectionBuffer()[20]), before + 5);
}

TEST(IntervalPage, KeepsTheUnusedWordAndAnUnknownTimeOutLeavesTheList)
{
    CRemoteDisplayIntervalDlg page;
    QByteArray r = record();
    FieldTable::setNumber(r, fields::interval::timeOut, 180);
    page.load(r, 16);
    auto *list = named<QComboBox>(&page, u"Time Out"_s);
    ASSERT_EQ(list->currentText(), u"180 Sec"_s);

    r.replace(1280, 4, "\x11\x22\x33\x44");
    FieldTable::setNumber(r, fields::interval::timeOut, 45);
    FieldTable::setNumber(r, fields::interval::timeOutSwitch, 0);
    page.load(r, 16);
    EXPECT_EQ(list->currentText(), u"180 Sec"_s);
    EXPECT_FALSE(list->isEnabled());
    named<QCheckBox>(&page, u"Time Out"_s)->click();
    EXPECT_TRUE(list->isEnabled());

    QStringList writes;
    page.setSectionWriter(recordingWriter(nullptr, writes));
    page.save();
    EXPECT_EQ(writes, QStringList {u"1268+24"_s});
    QByteArray expected = r.mid(1268, 24);
    expected[20] = 1; // switched on
    expected.replace(22, 2, QByteArray("\xB4\x00", 2)); // the 180 shown
    EXPECT_EQ(page.sectionBuffer(), expected);

    // The choices that have no place in the record only enable their fields.
    auto *eventTime = named<QSpinBox>(&page, u"Event Record Time"_s);
    ASSERT_NE(eventTime, nullptr);
    EXPECT_EQ(eventTime->minimum(), 1);
    EXPECT_EQ(eventTime->maximum(), 59);
    for (const char *off : {"Switching Interval Off", "Event Record Off"})
        named<QRadioButton>(&page, QString::fromLatin1(off))->click();
    EXPECT_FALSE(eventTime->isEnabled());
    EXPECT_FALSE(named<QSpinBox>(&page, u"Sequence(Sec)"_s)->isEnabled());
    EXPECT_TRUE(named<QSpinBox>(&page, u"Event Update Time"_s)->isEnabled());
    EXPECT_FALSE(page.needsSave());
}

// The spot dialog holds to the limit of the mode; the channels chosen there
// keep the value each had, and the new ones get 1.
TEST(EventDisplayPage, SpotChannelsKeepTheirValueAndTheDialogHoldsToTheLimitOfTheMode)
{
    namespace display = fields::eventDisplay;
    CRemoteDisplayEventDlg page;
    QByteArray r = record();
    FieldTable::setNumber(r, display::spotMode, 1); // Sequence
    for (int c = 0; c < 16; ++c)
        FieldTable::setNumber(r, display::spotChannel, c < 2 ? 7 : 0, c);
    page.load(r, 16);
    EXPECT_EQ(named<QLineEdit>(&page, u"Spot Channel"_s)->text(), u"01,02,"_s);
    const auto openSpotDialog = [&page] {
        pagetest::button(&page, u"..."_s)->click();
        return page.findChild<CRemoteChannelSel_Spot *>();
    };
    CRemoteChannelSel_Spot *dialog = openSpotDialog();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->limit(), 16);
    dialog->channelBox(1)->click();
    dialog->channelBox(3)->click();
    pagetest::button(dialog, u"OK"_s)->click();
    QByteArray expected = r;
    FieldTable::setNumber(expected, display::spotChannel, 0, 1);
    FieldTable::setNumber(expected, display::spotChannel, 1, 3);
    page.gather();
    EXPECT_EQ(page.sectionBuffer(), expected.mid(page.recordOffset(), 696));

    pick(named<QComboBox>(&page, u"Spot Mode"_s), 2); // Event
    EXPECT_EQ(openSpotDialog()->limit(), 1);
    dialog->reject();
    pick(named<QComboBox>(&page, u"Spot Mode"_s), 0); // Off
    EXPECT_FALSE(named<QLineEdit>(&page, u"Spot Channel"_s)->isEnabled());
}

TEST(EventDisplayPage, SaveSendsTheBlockWithWhatTheOtherDisplayPagesSaved)
{
    SessionHarness window;
    QByteArray initial = record();
    initial.replace(736, 64, pagetest::pattern(64)); // reserved bytes ride along
    SimProcess sim({}, initial);
    CWork &work = window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());
    CRemoteDisplayEventDlg events;
    CRemoteDisplayOSDDlg osd;
    QStringList writes;
    for (CSetupPage *page : std::initializer_list<CSetupPage *> {&events, &osd}) {
        page->setSectionWriter(recordingWriter(&work, writes));
        page->setRecordSource([&work] { return work.mirror(); });
        page->load(work.mirror(), 16);
    }

    // The OSD page saves after the event page was filled.
    pick(named<QComboBox>(&osd, u"Language"_s), 5);
    osd.save();
    named<QSpinBox>(&events, u"Brightness"_s)->setValue(77);
    events.save();
    EXPECT_EQ(writes, (QStringList {u"656+28"_s, u"604+696"_s}));

    QByteArray expected = initial;
    FieldTable::setNumber(expected, fields::osd::language, 5);
    FieldTable::setNumber(expected, fields::eventDisplay::brightness, 77);
    EXPECT_TRUE(testsupport::waitFor(
        [&] { return sim.storedRecord().mid(604, 696) == expected.mid(604, 696); }));
    EXPECT_EQ(events.sectionBuffer(), expected.mid(604, 696));
}
