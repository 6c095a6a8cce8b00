#include "pages/record/CRemoteRecordSetupDlg.h"

#include "pages/record/CRemoteRecordCopySettingDlg.h"
#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"
#include "tests/session/SessionHarness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using setup::FieldTable;
namespace record = setup::fields::record;
using Mode = CRemoteRecordSetupDlg::Mode;

namespace {

constexpr int BlockOffset = 8472;
constexpr int BlockLength = 5312;
constexpr int ScheduleOffset = 11032;

// A record whose RECORD block has a pattern in every byte the page does not
// own. Every profile is 704*240 (width 1, height 1), "Normal" quality and
// frame-rate index (mode + channel) % 6; Pre-Event is on for even channels,
// type M+A (3) and dwell 2 s.
QByteArray recordWithProfiles()
{
    QByteArray r = setup::FactoryDefaults::record().replace(BlockOffset, BlockLength,
                                                            pagetest::pattern(BlockLength));
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

QByteArray block(const QByteArray &record)
{
    return record.mid(BlockOffset, BlockLength);
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
            if (box->accessibleName() == name && box->isVisible())
                return box;
        }
        return nullptr;
    }
    QCheckBox *preEvent(int channel) const
    {
        return page.binder().widget<QCheckBox>(record::preEvent, Mode::PreEvent, channel - 1);
    }
    void setMode(int mode) { choose(pagetest::named<QComboBox>(&page, u"Record Mode"_s), mode); }

    SessionHarness window;
    CRemoteRecordSetupDlg page;
};

} // namespace

// The whole block goes out as category 0: the rows past the channel count,
// the bytes no list owns, the other modes and the schedule and holidays as
// the session holds them at the moment of the save all arrive unchanged.
TEST_F(RecordSetupPage, HeaderQualityOfOneModeReachesTheRecorderWithEverythingElseKept)
{
    for (int channels : {4, 8}) {
        SCOPED_TRACE(channels);
        const QByteArray initial = recordWithProfiles();
        SimProcess sim({u"--channels"_s, QString::number(channels)}, initial);
        CWork &work = window.connect(sim.port());
        ASSERT_TRUE(window.waitForReady());
        page.setSectionWriter([&work](setup::Section section, const QByteArray &bytes) {
            return work.writeSection(section, bytes);
        });
        page.setRecordSource([&work] { return work.mirror(); });
        page.load(work.mirror(), channels);
        EXPECT_FALSE(list(record::qualities, Mode::Normal, channels + 1)->isVisibleTo(&page));

        // Another page saves the schedule after this one was filled.
        QByteArray schedule = work.mirror().mid(ScheduleOffset, 988);
        schedule[0] = 3;
        ASSERT_TRUE(work.writeSection(setup::Section::Schedule, schedule));

        setMode(Mode::Event);
        ASSERT_EQ(header(u"Quality"_s)->itemText(2), u"High"_s);
        choose(header(u"Quality"_s), 2);
        EXPECT_EQ(header(u"Quality"_s)->currentIndex(), 0);
        EXPECT_TRUE(page.isModified());
        pagetest::button(&page, u"Save"_s)->click();
        EXPECT_FALSE(page.isModified());

        QByteArray expected = initial;
        expected.replace(ScheduleOffset, 988, schedule);
        for (int c = 0; c < channels; ++c) {
            FieldTable::setNumber(expected, record::quality, 0xFF01, Mode::Event, c);
            FieldTable::setNumber(expected, record::qualityCopy, 0xFF01, Mode::Event, c);
        }
        EXPECT_TRUE(testsupport::waitFor([&] {
            return block(sim.storedRecord()) == block(expected);
        })) << "the recorder holds another RECORD block";
        window.worker.reset();
    }
}

TEST_F(RecordSetupPage, PalRecorderShowsPalListsAndStoresIndexes)
{
    QByteArray initial = recordWithProfiles();
    FieldTable::setNumber(initial, record::frameRate, 5, Mode::Normal, 0);
    SimProcess sim({u"--video"_s, u"pal"_s}, initial);
    CWork &work = window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());
    page.load(work.mirror(), 16);
    EXPECT_EQ(list(record::resolution, Mode::Normal, 1)->currentText(), u"704*288"_s);
    EXPECT_EQ(list(record::frameRates, Mode::Normal, 1)->currentText(), u"25"_s);
    EXPECT_EQ(header(u"Resolution"_s)->itemText(4), u"352*288"_s);
    window.worker.reset();

    // Without a session the lists are NTSC's.
    page.load(initial, 16);
    EXPECT_EQ(list(record::resolution, Mode::Normal, 1)->currentText(), u"704*240"_s);

    // 352*480: half width (2), full height (0); the frame rate in both copies.
    choose(list(record::resolution, Mode::Normal, 2), 2);
    choose(list(record::frameRates, Mode::Normal, 2), 4);
    page.gather();
    const QByteArray &section = page.sectionBuffer();
    auto number = [&](const setup::FieldInfo &field) {
        setup::FieldInfo f = field;
        f.offset -= BlockOffset;
        return FieldTable::number(section, f, Mode::Normal, 1);
    };
    EXPECT_EQ(number(record::widthCode), 2u);
    EXPECT_EQ(number(record::heightCode), 0u);
    EXPECT_EQ(number(record::frameRate), 4u);
    EXPECT_EQ(number(record::frameRateCopy), 4u);
}

// In Pre-Event a channel's lists follow its check box; a header value the
// channel lists do not offer (Dwell Time past 5 s) leaves them empty, and the
// stored dwell stays. Switching modes shows the values afresh: Save disabled.
TEST_F(RecordSetupPage, PreEventRowsFollowTheirCheckBoxAndDwellHeaderPastFiveEmptiesTheLists)
{
    const QByteArray initial = recordWithProfiles();
    page.setSectionWriter([](setup::Section, const QByteArray &) { return 1; });
    page.load(initial, 4);
    setMode(Mode::PreEvent);
    EXPECT_TRUE(list(record::eventType, Mode::PreEvent, 1)->isEnabled());
    EXPECT_FALSE(list(record::eventType, Mode::PreEvent, 2)->isEnabled());
    EXPECT_EQ(list(record::eventType, Mode::PreEvent, 1)->currentText(), u"M+A"_s);
    QCheckBox *all = pagetest::named<QCheckBox>(&page, u"Pre-Event"_s);
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
    QByteArray expected = block(initial);
    for (int c = 0; c < 4; ++c) {
        const int at = 640 * Mode::PreEvent + 40 * c;
        expected[at] = 1;
        expected[at + 32] = 2; // M
    }
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
    pagetest::named<QCheckBox>(dialog, u"Resolution"_s)->setChecked(true);
    pagetest::named<QCheckBox>(dialog, u"To Ch 03"_s)->setChecked(true);
    pagetest::button(dialog, u"OK"_s)->click();

    EXPECT_EQ(list(record::resolution, Mode::Event, 3)->currentText(), u"352*240"_s);
    EXPECT_EQ(list(record::frameRates, Mode::Event, 3)->currentIndex(), 3);
    EXPECT_EQ(list(record::resolution, Mode::Event, 2)->currentText(), u"704*240"_s);
    EXPECT_EQ(list(record::resolution, Mode::Normal, 3)->currentText(), u"704*240"_s);
}
