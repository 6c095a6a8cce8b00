#include "pages/record/CRemoteRecordHolidayDlg.h"

#include "pages/record/CRemoteRecordDelAllHolidayDlg.h"
#include "pages/record/CRemoteRecordSetHolidayDlg.h"
#include "setup/FactoryDefaults.h"
#include "setup/HolidayList.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"
#include "tests/session/SessionHarness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using pagetest::named;

namespace {

constexpr int SectionOffset = 12020;
constexpr int SectionLength = 1764;

QByteArray holidaySlice(const QByteArray &record)
{
    return record.mid(SectionOffset, SectionLength);
}

} // namespace

// Fixed dates picked on the calendar and weekday holidays picked in the
// dialog reach the recorder in the stored order and forms, come back after
// reconnecting, and Delete All clears them once confirmed.
TEST(HolidayPage, HolidaysPickedOnTheCalendarsAreStoredAndReadBack)
{
    SessionHarness window;
    QByteArray initial = setup::FactoryDefaults::record().replace(SectionOffset, SectionLength,
                                                                  pagetest::pattern(SectionLength));
    initial[SectionOffset] = 1; // holidays in use
    initial[SectionOffset + 2] = 0;
    SimProcess sim({}, initial);
    CWork *work = &window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());

    CRemoteRecordHolidayDlg page;
    page.setSectionWriter([&work](setup::Section section, const QByteArray &bytes) {
        return work->writeSection(section, bytes);
    });
    page.setYear(2023); // 1 March 2023 is a Wednesday
    page.show();
    page.load(work->mirror(), 16);
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

    window.worker.reset();
    work = &window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());
    page.load(work->mirror(), 16);
    month->setCurrentIndex(0);
    EXPECT_TRUE(named<QToolButton>(&page, u"January 1"_s)->isChecked());
    EXPECT_EQ(named<QListWidget>(&page, u"Holiday"_s)->count(), 5);

    pagetest::button(&page, u"Delete All"_s)->click();
    auto *confirm = page.findChild<CRemoteRecordDelAllHolidayDlg *>();
    ASSERT_TRUE(confirm && confirm->isVisible());
    confirm->button(QMessageBox::Ok)->click();
    EXPECT_EQ(named<QListWidget>(&page, u"Holiday"_s)->count(), 0);
    EXPECT_TRUE(page.isModified());
    window.worker.reset();
}

TEST(HolidayPage, DefaultShowsTheFactoryHolidaysAndSaveWritesThem)
{
    CRemoteRecordHolidayDlg page;
    QByteArray written;
    page.setSectionWriter([&written](setup::Section, const QByteArray &bytes) {
        written = bytes;
        return 1;
    });
    page.setDefaultSource([] { return setup::FactoryDefaults::record(); });
    QByteArray record = setup::FactoryDefaults::record();
    record[SectionOffset + 2] = 0;
    page.load(record, 16);
    EXPECT_EQ(named<QListWidget>(&page, u"Holiday"_s)->count(), 0);

    pagetest::button(&page, u"Default"_s)->click();
    EXPECT_EQ(named<QListWidget>(&page, u"Holiday"_s)->count(), 2);
    page.save();
    EXPECT_EQ(written, holidaySlice(setup::FactoryDefaults::record()));
}
