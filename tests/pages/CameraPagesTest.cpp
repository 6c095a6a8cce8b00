// SPDX-License-Identifier: GPL-3.0-or-later

// What is special to each camera page.

#include "app/PageCatalog.h"
#include "pages/camera/CRemoteCameraAlarmOutDlg.h"
#include "pages/camera/CRemoteCameraCameraDlg.h"
#include "pages/camera/CRemoteCameraMotionDlg.h"
#include "pages/camera/CRemoteCameraPTZDlg.h"
#include "pages/camera/CRemoteCameraVideoLoss.h"
#include "pages/common/CRemoteCameraCopySettingDlg.h"
#include "pages/common/CRemoteCameraMotionMaskDlg.h"
#include "setup/Fields.h"
#include "tests/pages/PageTestSupport.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::FieldTable;
namespace camera = setup::fields::camera;

namespace {

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

} // namespace

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

// A stored value that no list item stands for shows no choice, one past a
// number box's range shows clamped; either goes back as it came, unless the
// page says otherwise.
TEST(Pages, ValuesOutOfRangeShowAsNoChoiceOrClampedAndStayStored)
{
    namespace alarmIn = setup::fields::alarmIn;
    namespace dst = setup::fields::dst;
    namespace motion = setup::fields::motion;
    namespace ptz = setup::fields::ptz;
    const struct
    {
        const char *page;
        setup::FieldInfo field;
        int index;
        quint32 stored;
        const char *control;
        QString shown; // list text ("" for no choice) or number
        quint32 saved;
        std::optional<setup::FieldInfo> on = {}; // set to 1 first
    } cases[] = {
        {"Alarm-In", alarmIn::dwell, 0, 0, "Dwell Time 01", {}, 0},
        {"Alarm-In", alarmIn::dwell, 0, 100, "Dwell Time 01", {}, 100},
        {"Alarm-In", alarmIn::normallyClosed, 0, 7, "Type 01", {}, 7, alarmIn::enabled},
        {"Alarm-Out", setup::fields::alarmOut::days, 0, 0x03, "Day 01", {}, 0x03},
        {"PTZ", ptz::panSpeed, 0, 0, "Pan Speed 01", u"1"_s, 0},
        // A channel not in use shows no protocol and saves protocol 0.
        {"PTZ", ptz::protocol, 0, 2, "Protocol 01", u"None"_s, 0},
        {"PTZ", ptz::protocol, 1, 9, "Protocol 02", {}, 9, ptz::inUse},
        {"Motion", motion::dayStartHour, 0, 25, "Day Time 01 hh", u"23"_s, 25},
        {"Motion", motion::dayStartMinute, 0, 99, "Day Time 01 mm", u"59"_s, 99},
        {"Date / Time", setup::fields::dateTime::timeZone, 0, 85, "Time Zone", {}, 85},
        {"Date / Time", dst::startMonth, 0, 0, "DST Start Time Month", {}, 0},
        {"Date / Time", dst::endMonth, 0, 13, "DST End Time Month", {}, 13},
        {"Date / Time", dst::startWeek, 0, 9, "DST Start Time Week", {}, 9},
        {"Date / Time", dst::endHour, 0, 25, "DST End Time Hour", {}, 25},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.control);
        QByteArray record = setup::FactoryDefaults::record();
        if (c.on)
            FieldTable::setNumber(record, *c.on, 1, c.index);
        FieldTable::setNumber(record, c.field, c.stored, c.index);
        std::unique_ptr<CSetupPage> page(
            PageCatalog::entry(PageCatalog::indexOf(c.page)).create(nullptr));
        page->load(record, 16);
        const QString name = QString::fromLatin1(c.control);
        if (auto *list = named<QComboBox>(page.get(), name))
            EXPECT_EQ(list->currentText(), c.shown);
        else
            EXPECT_EQ(named<QSpinBox>(page.get(), name)->text(), c.shown);
        page->gather();
        EXPECT_EQ(pagetest::number(*page, c.field, c.index), c.saved);
    }
}

TEST(PtzPage, ChannelListHasTheRecordersChannelsAndAProtocolPutsTheChannelInUse)
{
    namespace ptz = setup::fields::ptz;
    CRemoteCameraPTZDlg page;
    page.load(setup::FactoryDefaults::record(), 4);
    EXPECT_EQ(named<QComboBox>(&page, u"Channel"_s)->count(), 4);
    EXPECT_EQ(named<QComboBox>(&page, u"Channel"_s)->itemText(3), u"CH 04"_s);
    pagetest::select(&page, u"Protocol 03"_s, u"Pelco-P"_s);
    page.gather();
    EXPECT_EQ(pagetest::number(page, ptz::inUse, 2), 1u);
    EXPECT_EQ(pagetest::number(page, ptz::protocol, 2), 1u);
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
    EXPECT_EQ(pagetest::number(page, motion::dayMask, 2, 5), 0x1u);
}

namespace {

struct Channel
{
    QByteArray title;
    bool covert;
    quint8 audio;
};

// A record whose camera section has a pattern in every byte the page does not
// own; channel i holds `channels[i]`, or "CAM <i + 1>", covert on odd i, no audio.
QByteArray cameraRecord(const std::vector<Channel> &channels)
{
    QByteArray record = pagetest::patterned(setup::Section::Camera);
    for (int i = 0; i < 16; ++i) {
        const Channel c = i < int(channels.size())
                              ? channels[i]
                              : Channel {"CAM " + QByteArray::number(i + 1), i % 2 == 1, 0};
        FieldTable::setBytes(record, camera::title, c.title, i);
        FieldTable::setNumber(record, camera::covert, c.covert, i);
        FieldTable::setNumber(record, camera::audio, c.audio, i);
    }
    return record;
}

template<class T>
T *control(const QWidget *page, const char *column, int channel)
{
    return named<T>(page, QString::asprintf("%s %02d", column, channel));
}

QLineEdit *title(const QWidget *page, int channel)
{
    return control<QLineEdit>(page, "Camera Title", channel);
}

class CameraPage : public ::testing::Test
{
protected:
    void SetUp() override
    {
        page.setDefaultSource([] { return setup::FactoryDefaults::record(); });
        page.show();
    }

    SessionHarness window; // records the message boxes
    CRemoteCameraCameraDlg page;
};

} // namespace

TEST_F(CameraPage, FillShowsEachChannelAndSaveKeepsWhatThePageDoesNotOwn)
{
    const QByteArray record = cameraRecord({
        {"Lobby", false, 1},
        {"ABCDEFGHIJKLMNOPQRST", true, 8}, // all 20 bytes, no terminator
        {"Caf\xe9", false, 3}, // Windows-1252; audio 3 is no single input
    });
    page.load(record, 16);
    const struct
    {
        int channel;
        QString title;
        bool covert;
        QString audio;
    } rows[] = {{1, u"Lobby"_s, false, u"Ch 01"_s},
                {2, u"ABCDEFGHIJKLMNOPQRST"_s, true, u"Ch 04"_s},
                {3, u"Café"_s, false, u"Off"_s},
                {16, u"CAM 16"_s, true, u"Off"_s}};
    for (const auto &row : rows) {
        EXPECT_EQ(title(&page, row.channel)->text(), row.title);
        EXPECT_EQ(control<QCheckBox>(&page, "Covert", row.channel)->isChecked(), row.covert);
        EXPECT_EQ(control<QComboBox>(&page, "Audio", row.channel)->currentText(), row.audio);
        EXPECT_FALSE(title(&page, row.channel)->testAttribute(Qt::WA_InputMethodEnabled));
    }

    page.setSectionWriter([](setup::Section, const QByteArray &) { return 1; });
    page.save();
    // Only the audio byte that no list item stands for changes: the list shows Off.
    QByteArray expected = pagetest::slice(record, setup::Section::Camera);
    expected[2 * 48 + 32] = 0;
    EXPECT_EQ(page.sectionBuffer(), expected);

    QTest::keyClick(control<QComboBox>(&page, "Audio", 1), Qt::Key_Down);
    EXPECT_TRUE(page.isModified());
}

TEST_F(CameraPage, TitleLimitIsEighteenFromTheRecorderAndSixteenFromTheDefault)
{
    page.load(cameraRecord({}), 16);
    QTest::keyClicks(title(&page, 1), u"x"_s.repeated(25));
    EXPECT_EQ(title(&page, 1)->text().size(), 18);
    pagetest::button(&page, u"Default"_s)->click();
    QTest::keyClicks(title(&page, 1), u"x"_s.repeated(25));
    EXPECT_EQ(title(&page, 1)->text().size(), 16);

    // A longer title from the recorder stays whole and can only get shorter.
    page.load(cameraRecord({{"ABCDEFGHIJKLMNOPQRST", false, 0}}), 16);
    QTest::keyClicks(title(&page, 1), u"x"_s);
    QTest::keyClick(title(&page, 1), Qt::Key_Backspace);
    QTest::keyClicks(title(&page, 1), u"x"_s);
    EXPECT_EQ(title(&page, 1)->text(), u"ABCDEFGHIJKLMNOPQRS"_s);
}

TEST_F(CameraPage, ForbiddenTitleCharactersAreRemovedWithOneMessage)
{
    page.load(cameraRecord({{"", false, 0}}), 16);
    QLineEdit *edit = title(&page, 1);
    QTest::keyClicks(edit, u"a/b"_s);
    EXPECT_EQ(edit->text(), u"ab"_s);
    EXPECT_EQ(window.messages, QStringList {u"Can Not Use %, &, *, :, \", ', <, >, ?, / "_s});
    EXPECT_TRUE(page.isModified());

    // In the middle of the text the cursor stays where the operator typed.
    edit->setCursorPosition(1);
    QTest::keyClicks(edit, u"%&*:\"'<>?/Z"_s);
    EXPECT_EQ(edit->text(), u"aZb"_s);
    EXPECT_EQ(window.messages.size(), 11);
}

TEST_F(CameraPage, CovertHeaderIsCheckedOnlyWhenAllSixteenRowsAre)
{
    const std::vector<Channel> allCovert(16, {"C", true, 0});
    // Four channels: the hidden rows were never filled and count unchecked.
    page.load(cameraRecord(allCovert), 4);
    QCheckBox *header = named<QCheckBox>(&page, u"Covert"_s);
    EXPECT_FALSE(header->isChecked());

    header->click();
    for (int channel = 1; channel <= 16; ++channel)
        EXPECT_TRUE(control<QCheckBox>(&page, "Covert", channel)->isChecked()) << channel;
    EXPECT_TRUE(page.isModified());
    control<QCheckBox>(&page, "Covert", 2)->click();
    EXPECT_FALSE(header->isChecked());
    control<QCheckBox>(&page, "Covert", 2)->click();
    EXPECT_TRUE(header->isChecked());

    page.load(cameraRecord({{"C", false, 0}}), 16);
    EXPECT_FALSE(header->isChecked());
}

TEST_F(CameraPage, CopySettingsCopiesTheChosenValuesButOnlyATitleEnablesSave)
{
    for (const QStringList &chosen : {QStringList {u"Title"_s}, {u"Covert"_s, u"Audio"_s}}) {
        page.load(cameraRecord({{"CAM 1", false, 0}, {"Front", true, 4}}), 16);
        pagetest::button(&page, u"Copy Settings"_s)->click();
        auto *dialog = page.findChild<CRemoteCameraCopySettingDlg *>();
        ASSERT_TRUE(dialog && dialog->isVisible());
        named<QComboBox>(dialog, u"From"_s)->setCurrentIndex(1);
        for (const QString &property : {u"Title"_s, u"Covert"_s, u"Audio"_s})
            named<QCheckBox>(dialog, property)->setChecked(chosen.contains(property));
        named<QCheckBox>(dialog, u"To Ch 03"_s)->setChecked(true);
        named<QCheckBox>(dialog, u"To Ch 05"_s)->setChecked(true);
        pagetest::button(dialog, u"OK"_s)->click();

        const bool titles = chosen.contains(u"Title"_s);
        for (int target : {3, 5}) {
            EXPECT_EQ(title(&page, target)->text(),
                      titles ? u"Front"_s : u"CAM "_s + QString::number(target));
            EXPECT_EQ(control<QCheckBox>(&page, "Covert", target)->isChecked(), !titles);
            EXPECT_EQ(control<QComboBox>(&page, "Audio", target)->currentText(),
                      titles ? u"Off"_s : u"Ch 03"_s);
        }
        EXPECT_EQ(title(&page, 4)->text(), u"CAM 4"_s);
        EXPECT_EQ(page.isModified(), titles);
    }
}
