// The camera pages against recorder-sim: each saves exactly its section, and
// what is special to each page.

#include "pages/camera/CRemoteCameraAlarmDlg.h"
#include "pages/camera/CRemoteCameraAlarmOutDlg.h"
#include "pages/camera/CRemoteCameraMotionDlg.h"
#include "pages/camera/CRemoteCameraPTZDlg.h"
#include "pages/camera/CRemoteCameraVideoLoss.h"
#include "pages/common/CRemoteCameraCopySettingDlg.h"
#include "pages/common/CRemoteCameraMotionMaskDlg.h"
#include "pages/common/ChannelSelectionDialog.h"

#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"
#include "tests/session/SessionHarness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::FieldTable;
using setup::SetupRecordMap;

namespace {

// The factory defaults with a pattern in every byte of `section` that no
// field describes.
QByteArray recordWithReservedPattern(setup::Section section)
{
    QByteArray record = setup::FactoryDefaults::record();
    const setup::FieldGroup &group = FieldTable::section(section);
    std::vector<bool> owned(group.length);
    for (const setup::FieldInfo &f : group.fields) {
        for (int i = 0; i < f.count; ++i) {
            for (int j = 0; j < f.count2; ++j) {
                for (int b = 0; b < f.width; ++b)
                    owned[f.elementOffset(i, j) + b - group.offset] = true;
            }
        }
    }
    const QByteArray pattern = pagetest::pattern(group.length);
    for (int at = 0; at < group.length; ++at) {
        if (!owned[at])
            record[group.offset + at] = pattern[at];
    }
    return record;
}

// Paints the rectangle of cells from `from` to `to` ((column, row); `to`
// may lie outside the grid) in the open mask editor and confirms.
void paintMask(QWidget *page, const QString &field, QPoint from, QPoint to, bool confirm = true)
{
    named<QToolButton>(page, field)->click();
    auto *dialog = page->window()->findChild<CRemoteCameraMotionMaskDlg *>();
    ASSERT_TRUE(dialog && dialog->isVisible()) << field.toStdString();
    MotionMaskGrid *grid = dialog->grid();
    const QPoint press = grid->cellRect(from.y(), from.x()).center();
    const QPoint release
        = to.x() < MotionMaskGrid::Columns && to.y() < MotionMaskGrid::Rows
              ? grid->cellRect(to.y(), to.x()).center()
              : grid->cellRect(MotionMaskGrid::Rows - 1, MotionMaskGrid::Columns - 1).bottomRight()
                    + QPoint(200, 200);
    QTest::mousePress(grid, Qt::LeftButton, {}, press);
    QTest::mouseMove(grid, release);
    QTest::mouseRelease(grid, Qt::LeftButton, {}, release);
    pagetest::button(dialog, confirm ? u"OK"_s : u"Cancel"_s)->click();
}

// Opens the channel selection dialog of `field` ("Alarm-Out 02"), toggles
// `channels` and confirms.
void toggleChannels(QWidget *page, const QString &field, std::initializer_list<int> channels)
{
    named<QPushButton>(page, field + u"..."_s)->click();
    ChannelSelectionDialog *dialog = nullptr;
    for (auto *d : page->window()->findChildren<ChannelSelectionDialog *>()) {
        if (d->isVisible())
            dialog = d;
    }
    ASSERT_TRUE(dialog) << field.toStdString();
    for (int channel : channels)
        dialog->channelBox(channel - 1)->click();
    pagetest::button(dialog, u"OK"_s)->click();
}

struct SaveCase
{
    const char *name;
    std::function<CSetupPage *()> create;
    setup::Section section;
    // Edits channel 2 through the controls, and makes the same change in the record.
    std::function<void(CSetupPage &)> edit;
    std::function<void(QByteArray &)> expect;

    friend void PrintTo(const SaveCase &c, std::ostream *out) { *out << c.name; }
};

std::vector<SaveCase> saveCases()
{
    namespace videoLoss = setup::fields::videoLoss;
    namespace alarmIn = setup::fields::alarmIn;
    namespace alarmOut = setup::fields::alarmOut;
    namespace ptz = setup::fields::ptz;
    namespace motion = setup::fields::motion;
    return {
        {"Motion", [] { return new CRemoteCameraMotionDlg; }, setup::Section::Motion,
         [](CSetupPage &page) {
             named<QRadioButton>(&page, u"Day Setting"_s)->click();
             pagetest::select(&page, u"Day Setting Sensitivity 02"_s, u"High"_s);
             named<QSpinBox>(&page, u"Day Setting Min. Blocks 02"_s)->setValue(9);
             // The whole mask is watched: clear rows 1-2, columns 0-3.
             paintMask(&page, u"Day Setting Mask Zone 02"_s, {3, 2}, {0, 1});
         },
         [](QByteArray &record) {
             FieldTable::setNumber(record, motion::daySensitivity, 1, 1);
             FieldTable::setNumber(record, motion::dayMinBlocks, 9, 1);
             for (int row : {1, 2})
                 FieldTable::setNumber(record, motion::dayMask, 0x3FFFFFFF & ~0x3C000000u, 1, row);
         }},
        {"Ptz", [] { return new CRemoteCameraPTZDlg; }, setup::Section::Ptz,
         [](CSetupPage &page) {
             pagetest::select(&page, u"Channel"_s, u"CH 02"_s);
             pagetest::select(&page, u"Protocol 02"_s, u"Pelco-P"_s);
             pagetest::select(&page, u"Baudrate 02"_s, u"19200"_s);
             named<QSpinBox>(&page, u"Pan Speed 02"_s)->setValue(7);
         },
         [](QByteArray &record) {
             FieldTable::setNumber(record, ptz::inUse, 1, 1);
             FieldTable::setNumber(record, ptz::protocol, 1, 1);
             FieldTable::setNumber(record, ptz::baudRate, 19200, 1);
             FieldTable::setNumber(record, ptz::panSpeed, 7, 1);
         }},
        {"AlarmOut", [] { return new CRemoteCameraAlarmOutDlg; }, setup::Section::AlarmOut,
         [](CSetupPage &page) {
             pagetest::select(&page, u"Type 02"_s, u"N.C"_s);
             pagetest::select(&page, u"Dwell Time 02"_s, u"Continues"_s);
             named<QSpinBox>(&page, u"Lines in Use"_s)->setValue(2);
             pagetest::select(&page, u"Day 02"_s, u"Friday"_s);
             toggleChannels(&page, u"Alarm-Out 02"_s, {1});
         },
         [](QByteArray &record) {
             FieldTable::setNumber(record, alarmOut::normallyClosed, 1, 1);
             FieldTable::setNumber(record, alarmOut::dwell, 1, 1);
             FieldTable::setNumber(record, alarmOut::lineCount, 2);
             FieldTable::setNumber(record, alarmOut::days, 0x20, 1);
             FieldTable::setNumber(record, alarmOut::alarmOut, 0x1, 1);
         }},
        {"AlarmIn", [] { return new CRemoteCameraAlarmDlg; }, setup::Section::AlarmIn,
         [](CSetupPage &page) {
             pagetest::select(&page, u"Type 02"_s, u"N.C"_s);
             pagetest::select(&page, u"Dwell Time 02"_s, u"42 Sec"_s);
             toggleChannels(&page, u"Alarm-Out 02"_s, {2});
             toggleChannels(&page, u"Record Channel 02"_s, {2, 4});
         },
         [](QByteArray &record) {
             FieldTable::setNumber(record, alarmIn::enabled, 1, 1);
             FieldTable::setNumber(record, alarmIn::normallyClosed, 1, 1);
             FieldTable::setNumber(record, alarmIn::dwell, 42, 1);
             FieldTable::setNumber(record, alarmIn::alarmOut, 0x2, 1);
             FieldTable::setNumber(record, alarmIn::recordChannels, 0x8, 1);
         }},
        {"VideoLoss", [] { return new CRemoteCameraVideoLoss; }, setup::Section::VideoLoss,
         [](CSetupPage &page) {
             named<QCheckBox>(&page, u"Beep 02"_s)->click();
             toggleChannels(&page, u"Alarm-Out 02"_s, {1, 3});
         },
         [](QByteArray &record) {
             FieldTable::setNumber(record, videoLoss::beep, 1, 1);
             FieldTable::setNumber(record, videoLoss::alarmOut, 0x5, 1);
         }},
    };
}

class CameraPageSave : public ::testing::TestWithParam<SaveCase>
{
};

} // namespace

TEST_P(CameraPageSave, FourChannelRecorderGetsExactlyTheEditedSection)
{
    const SaveCase &c = GetParam();
    const QByteArray record = recordWithReservedPattern(c.section);
    SimProcess sim({u"--channels"_s, u"4"_s}, record);
    SessionHarness window;
    CWork &work = window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());

    std::unique_ptr<CSetupPage> page(c.create());
    std::vector<setup::Section> written;
    page->setSectionWriter([&](setup::Section section, const QByteArray &bytes) {
        written.push_back(section);
        return work.writeSection(section, bytes);
    });
    page->show();
    page->load(work.mirror(), int(window.record.channelCount));
    c.edit(*page);
    ASSERT_TRUE(page->isModified());
    pagetest::button(page.get(), u"Save"_s)->click();

    QByteArray expected = record;
    c.expect(expected);
    ASSERT_NE(expected, record);
    EXPECT_TRUE(testsupport::waitFor([&] { return sim.storedRecord() == expected; }));
    EXPECT_EQ(written, std::vector {c.section});
    EXPECT_FALSE(page->isModified());
    for (const QString &message : std::as_const(window.messages))
        EXPECT_EQ(message, u"Complete Save   \t"_s);
}

INSTANTIATE_TEST_SUITE_P(CameraPages, CameraPageSave, ::testing::ValuesIn(saveCases()),
                         [](const auto &info) { return std::string(info.param.name); });

TEST(VideoLossPage, BeepHeaderAfterDefaultCountsTheRecordersChannels)
{
    namespace videoLoss = setup::fields::videoLoss;
    QByteArray record = setup::FactoryDefaults::record();
    for (int c = 0; c < 4; ++c)
        FieldTable::setNumber(record, videoLoss::beep, 1, c);
    CRemoteCameraVideoLoss page;
    page.setDefaultSource([&] { return record; });
    page.load(record, 4);
    auto *header = named<QCheckBox>(&page, u"Beep"_s);
    EXPECT_FALSE(header->isChecked());
    page.loadDefault();
    EXPECT_TRUE(header->isChecked());
    EXPECT_TRUE(page.isModified());
}

TEST(AlarmOutPage, SaveRefusesTheFirstLineThatDoesNotStartBeforeItEnds)
{
    namespace alarmOut = setup::fields::alarmOut;
    const struct
    {
        int line; // 0-based
        int startHour, startMinute, endHour, endMinute;
        int failingLine; // 1-based, 0 when the save goes through
    } cases[] = {
        {1, 8, 0, 8, 0, 2},   {2, 23, 0, 1, 0, 3}, {0, 8, 0, 8, 1, 0},
        {0, 8, 30, 8, 29, 1}, {3, 9, 0, 8, 0, 0}, // line 4 is not in use
    };
    SessionHarness window;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.line);
        QByteArray record = setup::FactoryDefaults::record();
        FieldTable::setNumber(record, alarmOut::lineCount, 3);
        FieldTable::setNumber(record, alarmOut::startHour, c.startHour, c.line);
        FieldTable::setNumber(record, alarmOut::startMinute, c.startMinute, c.line);
        FieldTable::setNumber(record, alarmOut::endHour, c.endHour, c.line);
        FieldTable::setNumber(record, alarmOut::endMinute, c.endMinute, c.line);
        CRemoteCameraAlarmOutDlg page;
        int sent = 0;
        page.setSectionWriter([&](setup::Section, const QByteArray &) { return ++sent; });
        page.load(record, 16);
        pagetest::select(&page, u"Event 01"_s, u"Motion"_s);
        window.messages.clear();
        page.save();
        if (c.failingLine) {
            EXPECT_EQ(
                window.messages,
                QStringList {u"Set Time Error!!\nCheck Line Number : %1"_s.arg(c.failingLine)});
            EXPECT_EQ(sent, 0);
            EXPECT_TRUE(page.isModified());
        } else {
            EXPECT_TRUE(window.messages.isEmpty());
            EXPECT_EQ(sent, 1);
        }
    }
}

TEST(AlarmOutPage, DefaultRestoresTheOutputsButNotTheSchedule)
{
    namespace alarmOut = setup::fields::alarmOut;
    QByteArray record = setup::FactoryDefaults::record();
    FieldTable::setNumber(record, alarmOut::enabled, 0, 0);
    FieldTable::setNumber(record, alarmOut::days, 0x01, 0);
    CRemoteCameraAlarmOutDlg page;
    page.setDefaultSource([] { return setup::FactoryDefaults::record(); });
    page.load(record, 16);
    pagetest::select(&page, u"Day 02"_s, u"Monday"_s);
    page.loadDefault();
    EXPECT_EQ(named<QComboBox>(&page, u"Type 01"_s)->currentText(), u"N.O"_s);
    EXPECT_EQ(named<QComboBox>(&page, u"Day 01"_s)->currentText(), u"Sunday"_s);
    EXPECT_EQ(named<QComboBox>(&page, u"Day 02"_s)->currentText(), u"Monday"_s);
    EXPECT_TRUE(page.isModified());
}

TEST(MotionPage, TimeSaveRefusesADayThatDoesNotStartBeforeTheNight)
{
    namespace motion = setup::fields::motion;
    const struct
    {
        int channels;
        int dayHour, dayMinute, nightHour, nightMinute; // channel 2
        bool timeView;
        int refusedChannel; // 0 when the save goes through
    } cases[] = {
        {16, 8, 0, 8, 0, true, 2},  {16, 8, 0, 8, 1, true, 0}, {16, 20, 0, 8, 0, true, 2},
        {16, 8, 0, 8, 0, false, 0}, // other views save without the check
        {1, 8, 0, 20, 0, true, 1}, // one channel: always refused
        {1, 8, 0, 20, 0, false, 0},
    };
    SessionHarness window;
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.channels << ' ' << c.dayHour << ':' << c.dayMinute
                                        << ' ' << c.nightHour << ':' << c.nightMinute);
        QByteArray record = setup::FactoryDefaults::record();
        FieldTable::setNumber(record, motion::dayStartHour, c.dayHour, 1);
        FieldTable::setNumber(record, motion::dayStartMinute, c.dayMinute, 1);
        FieldTable::setNumber(record, motion::nightStartHour, c.nightHour, 1);
        FieldTable::setNumber(record, motion::nightStartMinute, c.nightMinute, 1);
        CRemoteCameraMotionDlg page;
        int sent = 0;
        page.setSectionWriter([&](setup::Section, const QByteArray &) { return ++sent; });
        page.load(record, c.channels);
        if (!c.timeView)
            page.showView(CRemoteCameraMotionDlg::ActionView);
        window.messages.clear();
        page.save();
        if (c.refusedChannel) {
            EXPECT_EQ(window.messages,
                      QStringList {u"Set Time Error!!\nChannel : %1"_s.arg(c.refusedChannel)});
            EXPECT_EQ(sent, 0);
        } else {
            EXPECT_TRUE(window.messages.isEmpty());
            EXPECT_EQ(sent, 1);
        }
    }
}

TEST(MotionPage, MaskEditorIgnoresBitsThirtyAndThirtyOneAndClampsTheDrag)
{
    namespace motion = setup::fields::motion;
    QByteArray record = setup::FactoryDefaults::record();
    for (int row = 0; row < 24; ++row)
        FieldTable::setNumber(record, motion::nightMask, (row % 2 ? 0xC0000000 : 0x40000000) | 1, 0,
                              row);
    CRemoteCameraMotionDlg page;
    page.show();
    page.load(record, 16);
    named<QRadioButton>(&page, u"Night Setting"_s)->click();

    // Cancel keeps the words as they came, bits 30 and 31 included.
    paintMask(&page, u"Night Setting Mask Zone 01"_s, {0, 0}, {0, 0}, false);
    auto *dialog = page.findChild<CRemoteCameraMotionMaskDlg *>();
    EXPECT_EQ(dialog->windowTitle(), u"Motion - Ch. 1 - Night Setting"_s);
    for (int row = 1; row < 24; ++row) {
        EXPECT_TRUE(dialog->grid()->cell(row, 29)) << row;
        EXPECT_FALSE(dialog->grid()->cell(row, 0)) << row;
    }
    EXPECT_FALSE(page.isModified());
    page.gather();
    EXPECT_EQ(page.sectionBuffer(), record.mid(2708, 4500));

    // A drag that leaves the grid stops at its last row and column.
    paintMask(&page, u"Night Setting Mask Zone 01"_s, {28, 22}, {99, 99});
    EXPECT_TRUE(page.isModified());
    page.gather();
    QByteArray expected = record;
    for (int row = 0; row < 24; ++row)
        FieldTable::setNumber(expected, motion::nightMask, row >= 22 ? 0x3 : 0x1, 0, row);
    EXPECT_EQ(page.sectionBuffer(), expected.mid(2708, 4500));
}

TEST(CameraPages, ValuesOutOfRangeShowAsNoChoiceOrClampedAndStayStored)
{
    namespace alarmIn = setup::fields::alarmIn;
    namespace alarmOut = setup::fields::alarmOut;
    namespace motion = setup::fields::motion;
    namespace ptz = setup::fields::ptz;
    const struct
    {
        std::function<CSetupPage *()> create;
        setup::FieldInfo field;
        int i;
        quint32 stored;
        const char *control;
        QString shown; // list text ("" for no choice) or number
        quint32 saved;
    } cases[] = {
        {[] { return new CRemoteCameraAlarmDlg; }, alarmIn::dwell, 0, 0, "Dwell Time 01", {}, 0},
        {[] { return new CRemoteCameraAlarmDlg; },
         alarmIn::dwell,
         0,
         100,
         "Dwell Time 01",
         {},
         100},
        {[] { return new CRemoteCameraAlarmDlg; }, alarmIn::normallyClosed, 0, 7, "Type 01", {}, 7},
        {[] { return new CRemoteCameraAlarmOutDlg; }, alarmOut::days, 0, 0x03, "Day 01", {}, 0x03},
        {[] { return new CRemoteCameraPTZDlg; }, ptz::panSpeed, 0, 0, "Pan Speed 01", u"1"_s, 0},
        {[] { return new CRemoteCameraMotionDlg; }, motion::dayStartHour, 0, 25, "Day Time 01 hh",
         u"23"_s, 25},
        {[] { return new CRemoteCameraMotionDlg; }, motion::dayStartMinute, 0, 99, "Day Time 01 mm",
         u"59"_s, 99},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.control);
        QByteArray record = setup::FactoryDefaults::record();
        FieldTable::setNumber(record, c.field, c.stored, c.i);
        if (c.field.offset == alarmIn::normallyClosed.offset)
            FieldTable::setNumber(record, alarmIn::enabled, 1, c.i);
        std::unique_ptr<CSetupPage> page(c.create());
        page->load(record, 16);
        const QString name = QString::fromLatin1(c.control);
        if (auto *list = named<QComboBox>(page.get(), name)) {
            EXPECT_EQ(list->currentText(), c.shown);
        } else {
            auto *box = named<QSpinBox>(page.get(), name);
            ASSERT_TRUE(box);
            EXPECT_EQ(box->text(), c.shown);
        }
        page->gather();
        const int offset = SetupRecordMap::section(*page->section()).offset;
        setup::FieldInfo inSection = c.field;
        inSection.offset -= offset;
        EXPECT_EQ(FieldTable::number(page->sectionBuffer(), inSection, c.i), c.saved);
    }
}

TEST(PtzPage, ChannelNotInUseShowsNoProtocolAndSavesProtocolZero)
{
    namespace ptz = setup::fields::ptz;
    QByteArray record = setup::FactoryDefaults::record();
    FieldTable::setNumber(record, ptz::protocol, 2, 0);
    FieldTable::setNumber(record, ptz::inUse, 1, 1);
    FieldTable::setNumber(record, ptz::protocol, 9, 1); // past the list
    CRemoteCameraPTZDlg page;
    page.load(record, 4);
    EXPECT_EQ(named<QComboBox>(&page, u"Channel"_s)->count(), 4);
    EXPECT_EQ(named<QComboBox>(&page, u"Channel"_s)->itemText(3), u"CH 04"_s);
    EXPECT_EQ(named<QComboBox>(&page, u"Protocol 01"_s)->currentText(), u"None"_s);
    EXPECT_EQ(named<QComboBox>(&page, u"Protocol 02"_s)->currentIndex(), -1);
    page.gather();
    QByteArray expected = record.mid(2068, 640);
    expected[4] = 0;
    EXPECT_EQ(page.sectionBuffer(), expected);
}

TEST(MotionPage, CopySettingsCopiesOnlyTheSettingShown)
{
    namespace motion = setup::fields::motion;
    QByteArray record = setup::FactoryDefaults::record();
    FieldTable::setNumber(record, motion::daySensitivity, 0, 0);
    FieldTable::setNumber(record, motion::nightSensitivity, 4, 0);
    FieldTable::setNumber(record, motion::dayMask, 0x1, 0, 5);
    CRemoteCameraMotionDlg page;
    page.show();
    page.load(record, 16);
    named<QRadioButton>(&page, u"Day Setting"_s)->click();
    pagetest::button(&page, u"Copy Settings"_s)->click();
    auto *dialog = page.findChild<CRemoteCameraCopySettingDlg *>();
    ASSERT_TRUE(dialog && dialog->isVisible());
    for (const QString &property : {u"Sensitivity"_s, u"Mask Zone"_s})
        named<QCheckBox>(dialog, property)->setChecked(true);
    named<QCheckBox>(dialog, u"To Ch 03"_s)->setChecked(true);
    pagetest::button(dialog, u"OK"_s)->click();

    EXPECT_EQ(named<QComboBox>(&page, u"Day Setting Sensitivity 03"_s)->currentText(),
              u"Highest"_s);
    EXPECT_EQ(named<QComboBox>(&page, u"Night Setting Sensitivity 03"_s)->currentText(),
              u"Normal"_s);
    page.gather();
    setup::FieldInfo mask = motion::dayMask;
    mask.offset -= motion::base;
    EXPECT_EQ(FieldTable::number(page.sectionBuffer(), mask, 2, 5), 0x1u);
}
