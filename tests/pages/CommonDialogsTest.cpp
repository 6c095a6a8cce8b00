// SPDX-License-Identifier: GPL-3.0-or-later

// The channel selection and copy setting dialogs and the editors that open them.

#include "app/PageCatalog.h"
#include "pages/camera/CRemoteCameraMotionDlg.h"
#include "pages/common/CRemoteCameraCopySettingDlg.h"
#include "pages/common/CRemoteChannelSel.h"
#include "pages/common/CRemoteChannelSel_Spot.h"
#include "pages/common/CRemoteChannelSelect.h"
#include "pages/common/ChannelSelectionEditor.h"
#include "pages/common/FileDialogFilter.h"
#include "pages/common/MotionMaskGrid.h"
#include "pages/display/CRemoteDisplayEventDlg.h"
#include "pages/record/CRemoteRecordScheduleDlg.h"
#include "setup/Fields.h"
#include "tests/pages/PageTestSupport.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::FieldTable;

namespace {

QCheckBox *box(const QWidget *dialog, int channel)
{
    return named<QCheckBox>(dialog, QString::asprintf("Ch %02d", channel));
}

// Which of the sixteen boxes can be clicked: "1" enabled and shown, "." not.
QString clickable(const QWidget *dialog)
{
    QString state;
    for (int channel = 1; channel <= 16; ++channel)
        state
            += box(dialog, channel)->isVisible() && box(dialog, channel)->isEnabled() ? u'1' : u'.';
    return state;
}

} // namespace

TEST(ChannelSelection, SelectAllCoversItsChannels)
{
    const struct
    {
        const char *dialog;
        int channels;
        const char *selectAll;
        quint16 before;
        quint16 after;
    } cases[] = {
        // The first channel-count boxes; hidden channels keep their flags.
        {"sel", 4, "Select All", 0x8000, 0x800F},
        {"sel", 16, "Select All", 0x0001, 0xFFFF},
        // Channels 1 to 4 always, even those the recorder lacks.
        {"select", 2, "Select All Ch 01 - Ch 04", 0x0000, 0x000F},
        {"select", 16, "Select All Ch 05 - Ch 16", 0x0003, 0xFFF3},
        // Nothing beyond channel 4 on a recorder of four channels.
        {"select", 4, "Select All Ch 05 - Ch 16", 0x0001, 0x0001},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.dialog) + ' ' + c.selectAll + ' ' + std::to_string(c.channels));
        std::unique_ptr<ChannelSelectionDialog> dialog;
        if (std::strcmp(c.dialog, "sel") == 0)
            dialog = std::make_unique<CRemoteChannelSel>();
        else
            dialog = std::make_unique<CRemoteChannelSelect>();
        dialog->setChannelCount(c.channels);
        dialog->setSelection(c.before);
        dialog->open();
        named<QCheckBox>(dialog.get(), QString::fromLatin1(c.selectAll))->click();
        EXPECT_EQ(dialog->selection(), c.after);
        EXPECT_EQ(clickable(dialog.get()).count(u'1'), c.channels);
    }
}

TEST(ChannelSelection, SpotDialogStopsAtItsLimit)
{
    CRemoteChannelSel_Spot dialog;
    dialog.setChannelCount(4);
    dialog.setLimit(1);
    dialog.open();
    QPushButton *ok = pagetest::button(&dialog, u"OK"_s);
    EXPECT_EQ(clickable(&dialog), u"1111............"_s);
    EXPECT_FALSE(named<QCheckBox>(&dialog, u"Select All"_s)->isEnabled());

    box(&dialog, 3)->click();
    EXPECT_EQ(clickable(&dialog), u"..1............."_s);
    EXPECT_TRUE(ok->isEnabled());
    box(&dialog, 3)->click();
    EXPECT_EQ(clickable(&dialog), u"1111............"_s);

    // A choice above the limit from elsewhere cannot be confirmed.
    dialog.setFlags({1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});
    EXPECT_FALSE(ok->isEnabled());
    box(&dialog, 1)->click();
    EXPECT_TRUE(ok->isEnabled());
    EXPECT_EQ(dialog.flags()[15], 1);
    EXPECT_EQ(dialog.flags()[0], 0);
}

TEST(ChannelSelection, EditorShowsTheChannelsAndKeepsWhatItDoesNotShow)
{
    namespace alarmIn = setup::fields::alarmIn;
    using Dialog = ChannelSelectionEditor::Dialog;
    for (const Dialog kind : {Dialog::Channels, Dialog::AlarmOutputs}) {
        // Editors read and write at record offsets: the whole record is a section at 0.
        QByteArray record = pagetest::pattern(setup::SetupRecordMap::RecordSize);
        FieldTable::setNumber(record, alarmIn::recordChannels, 0xA0010005, 2);
        QWidget page;
        ChannelSelectionEditor editor(kind, alarmIn::recordChannels, 2, 0, &page);
        editor.setAccessibleName(u"Record Channel 03"_s);
        editor.setChannelCount(16);
        editor.fill({record, 0});
        EXPECT_EQ(editor.text()->text(), u"01,03,"_s);

        QSignalSpy edited(&editor, &FieldEditor::edited);
        for (bool confirm : {false, true}) {
            named<QPushButton>(&page, u"Record Channel 03..."_s)->click();
            auto *dialog = page.findChild<ChannelSelectionDialog *>();
            ASSERT_TRUE(dialog && dialog->isVisible());
            EXPECT_EQ(qobject_cast<CRemoteChannelSelect *>(dialog) != nullptr,
                      kind == Dialog::AlarmOutputs);
            box(dialog, 1)->click();
            box(dialog, 16)->click();
            pagetest::button(dialog, confirm ? u"OK"_s : u"Cancel"_s)->click();
        }
        EXPECT_EQ(edited.count(), 1);
        EXPECT_EQ(editor.text()->text(), u"03,16,"_s);
        QByteArray expected = record;
        setup::SectionEdit edit(record, 0);
        editor.gather(edit);
        FieldTable::setNumber(expected, alarmIn::recordChannels, 0xA0018004, 2);
        EXPECT_EQ(record, expected);
    }
}

namespace {

QCheckBox *target(const QWidget *dialog, int channel)
{
    return named<QCheckBox>(dialog, QString::asprintf("To Ch %02d", channel));
}

} // namespace

// Each page offers the copy properties of its columns, Motion those of the
// view shown and Record Setup all five in every mode.
TEST(CopySettingDialog, EachPageOffersThePropertiesOfItsColumns)
{
    const struct
    {
        const char *page;
        int view;
        QStringList properties;
    } cases[] = {
        {"Camera Setup", 0, {u"Title"_s, u"Covert"_s, u"Audio"_s}},
        {"Alarm-In", 0, {u"Type"_s, u"Beep"_s, u"Alarm-Out"_s}},
        {"Alarm-Out", 0, {u"Type"_s, u"Dwell Time"_s}},
        {"Video Loss", 0, {u"Beep"_s, u"Alarm-Out"_s}},
        {"Motion", CRemoteCameraMotionDlg::TimeView, {u"Day Time"_s}},
        {"Motion",
         CRemoteCameraMotionDlg::DayView,
         {u"Sensitivity"_s, u"Min Blocks"_s, u"Mask Zone"_s}},
        {"Motion",
         CRemoteCameraMotionDlg::NightView,
         {u"Sensitivity"_s, u"Min Blocks"_s, u"Mask Zone"_s}},
        {"Motion", CRemoteCameraMotionDlg::ActionView, {u"Beep"_s, u"Alarm-Out"_s}},
        {"PTZ",
         0,
         {u"Protocol"_s, u"Baudrate"_s, u"Data Bits"_s, u"Stop Bits"_s, u"Parity"_s,
          u"PTZ Speed"_s}},
        {"Setup", 0, {u"Resolution"_s, u"Quality"_s, u"FPS"_s, u"Type"_s, u"Dwell Time"_s}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.page);
        std::unique_ptr<CSetupPage> page(
            PageCatalog::entry(PageCatalog::indexOf(c.page)).create(nullptr));
        page->load(setup::FactoryDefaults::record(), 16);
        if (auto *motion = qobject_cast<CRemoteCameraMotionDlg *>(page.get()))
            motion->showView(CRemoteCameraMotionDlg::View(c.view));
        pagetest::button(page.get(), u"Copy Settings"_s)->click();
        auto *dialog = page->findChild<CopySettingDialog *>();
        ASSERT_TRUE(dialog);
        QStringList shown;
        for (QCheckBox *box : dialog->findChildren<QCheckBox *>()) {
            if (box->isVisible() && !box->accessibleName().contains(u"Ch "_s)
                && box->accessibleName() != u"Select All"_s)
                shown.append(box->accessibleName());
        }
        EXPECT_EQ(shown, c.properties) << c.view;
        dialog->reject();
    }
}

TEST(CopySettingDialog, SelectAllNeverTicksTheSource)
{
    CRemoteCameraCopySettingDlg dialog;
    dialog.setChannelCount(4);
    dialog.open();
    EXPECT_EQ(dialog.size(), QSize(350, 500));
    auto *from = named<QComboBox>(&dialog, u"From"_s);
    EXPECT_EQ(from->currentIndex(), 0);
    for (int channel = 1; channel <= 16; ++channel) {
        EXPECT_EQ(target(&dialog, channel)->isVisible(), channel <= 4) << channel;
        EXPECT_EQ(target(&dialog, channel)->isEnabled(), channel != 1) << channel;
    }

    target(&dialog, 3)->setChecked(true);
    from->setCurrentIndex(2);
    named<QCheckBox>(&dialog, u"Select All"_s)->click();
    for (int channel = 1; channel <= 16; ++channel)
        EXPECT_EQ(target(&dialog, channel)->isChecked(), channel != 3) << channel;

    // A new source frees the old one's box and locks its own, ticked or not.
    from->setCurrentIndex(4);
    EXPECT_TRUE(target(&dialog, 3)->isEnabled());
    EXPECT_FALSE(target(&dialog, 5)->isEnabled());
    EXPECT_TRUE(target(&dialog, 5)->isChecked());

    named<QCheckBox>(&dialog, u"Select All"_s)->click();
    for (int channel = 1; channel <= 16; ++channel)
        EXPECT_FALSE(target(&dialog, channel)->isChecked()) << channel;
}

TEST(CopySettingDialog, OkKeepsTheChoicesAndCancelForgetsThem)
{
    CRemoteCameraCopySettingDlg dialog;
    const char *const properties[] = {"Title", "Covert", "Audio"};
    dialog.offer(properties);
    dialog.open();
    named<QComboBox>(&dialog, u"From"_s)->setCurrentIndex(1);
    named<QCheckBox>(&dialog, u"Covert"_s)->setChecked(true);
    target(&dialog, 16)->setChecked(true);
    target(&dialog, 1)->setChecked(true);
    pagetest::button(&dialog, u"OK"_s)->click();

    EXPECT_EQ(dialog.sourceChannel(), 1);
    EXPECT_TRUE(dialog.copies("Covert"));
    EXPECT_FALSE(dialog.copies("Title"));
    EXPECT_FALSE(dialog.copies("Beep"));
    for (int channel = 0; channel < 16; ++channel)
        EXPECT_EQ(dialog.targetTicked(channel), channel == 0 || channel == 15) << channel;

    dialog.open();
    named<QCheckBox>(&dialog, u"Title"_s)->setChecked(true);
    target(&dialog, 2)->setChecked(true);
    pagetest::button(&dialog, u"Cancel"_s)->click();
    dialog.open();
    EXPECT_FALSE(named<QCheckBox>(&dialog, u"Title"_s)->isChecked());
    EXPECT_FALSE(target(&dialog, 2)->isChecked());
    EXPECT_TRUE(target(&dialog, 16)->isChecked());
}

// A channel list longer than its field shows from its start and is cut at a
// visible ellipsis, the whole list in the tooltip.
TEST(ChannelSelection, ChannelListsShowFromTheirStartAndFitTheirField)
{
    QByteArray record = setup::FactoryDefaults::record();
    FieldTable::setNumber(record, setup::fields::schedule::channels, 0xFFFF);
    for (int c = 0; c < 16; ++c)
        FieldTable::setNumber(record, setup::fields::eventDisplay::spotChannel, 1, c);
    CRemoteRecordScheduleDlg schedule;
    CRemoteDisplayEventDlg event;
    for (CSetupPage *page :
         {static_cast<CSetupPage *>(&schedule), static_cast<CSetupPage *>(&event)}) {
        page->load(record, 16);
        page->show();
        QLineEdit *shown = nullptr;
        for (QLineEdit *line : page->findChildren<QLineEdit *>()) {
            if (line->isReadOnly() && line->isVisible() && line->toolTip().contains(u"16"_s))
                shown = line;
        }
        ASSERT_NE(shown, nullptr) << page->metaObject()->className();
        EXPECT_EQ(shown->cursorPosition(), 0);
        EXPECT_LE(shown->fontMetrics().horizontalAdvance(shown->text()),
                  shown->contentsRect().width());
        EXPECT_TRUE(shown->text() == shown->toolTip()
                    || (shown->text().endsWith(u'\u2026')
                        && shown->toolTip().startsWith(shown->text().chopped(1))))
            << shown->text().toStdString();
    }
}

TEST(FileDialogFilter, PatternsShowOnceAndMatchEitherCase)
{
    const std::pair<const char *, const char *> cases[] = {
        {"KRP Files (*.KRP)|*.KRP;||", "KRP Files (*.KRP *.krp)"},
        {"Data Files(*.dat)|*.dat||", "Data Files (*.dat *.DAT)"},
        {"A|*.a;*.B|C|*.c||", "A (*.a *.A *.B *.b);;C (*.c *.C)"},
    };
    for (const auto &[filter, qt] : cases)
        EXPECT_EQ(FileDialogFilter::toQt(QString::fromLatin1(filter)), QString::fromLatin1(qt));
}

// By keyboard the cursor stays on the grid and Space toggles the cell under
// it; what is watched, and a rectangle being dragged, show on the picture.
TEST(MotionMaskGrid, KeysMoveACursorThatStaysOnTheGridAndTheMaskShows)
{
    MotionMaskGrid grid;
    grid.resize(grid.sizeHint());
    QSignalSpy changed(&grid, &MotionMaskGrid::changed);
    const auto press = [&](Qt::Key key, int times = 1) {
        for (int i = 0; i < times; ++i)
            QTest::keyClick(&grid, key);
    };
    press(Qt::Key_Left);
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    press(Qt::Key_Right, 2);
    press(Qt::Key_Down);
    press(Qt::Key_Space, 2);
    press(Qt::Key_A);
    press(Qt::Key_Right, MotionMaskGrid::Columns + 5);
    press(Qt::Key_Down, MotionMaskGrid::Rows + 5);
    press(Qt::Key_Space);
    MotionMaskGrid::Mask expected {};
    expected[0] = 1u << 29;
    expected[MotionMaskGrid::Rows - 1] = 1u;
    EXPECT_EQ(grid.mask(), expected);
    EXPECT_EQ(changed.size(), 4);

    const auto colour = [&](int row, int column) {
        return grid.grab().toImage().pixel(grid.cellRect(row, column).center());
    };
    EXPECT_NE(colour(0, 0), colour(0, 1));
    const QRgb idle = colour(5, 5);
    QTest::mousePress(&grid, Qt::LeftButton, {}, grid.cellRect(5, 5).center());
    EXPECT_NE(colour(5, 5), idle);
    QTest::mouseRelease(&grid, Qt::LeftButton, {}, grid.cellRect(5, 5).center());
    EXPECT_TRUE(grid.cell(5, 5));
}
