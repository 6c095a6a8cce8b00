// SPDX-License-Identifier: GPL-3.0-or-later

// What every page does, on the camera page: the modified flag, Default and
// the rows of the recorder's channels.

#include "pages/camera/CRemoteCameraCameraDlg.h"
#include "pages/display/CRemoteDisplayDateTimeDlg.h"
#include "setup/Fields.h"
#include "tests/pages/PageTestSupport.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using setup::FieldTable;
namespace camera = setup::fields::camera;

namespace {

constexpr int SectionOffset = 1300;
constexpr int SectionLength = 768;
const QByteArray Record = pagetest::pattern(setup::SetupRecordMap::RecordSize);

QLineEdit *title(const QWidget *page, int channel)
{
    return pagetest::named<QLineEdit>(page, QString::asprintf("Camera Title %02d", channel));
}

} // namespace

TEST(SetupPage, FillLeavesThePageUnmodifiedUntilAnEditAndSaveClearsIt)
{
    CRemoteCameraCameraDlg page;
    QSignalSpy modified(&page, &CSetupPage::modifiedChanged);
    page.load(Record, 16);
    QPushButton *save = pagetest::button(&page, u"Save"_s);
    EXPECT_FALSE(page.isModified());
    EXPECT_FALSE(save->isEnabled());
    EXPECT_TRUE(modified.isEmpty());

    pagetest::typeInto(title(&page, 1), u"42"_s);
    EXPECT_TRUE(save->isEnabled());
    EXPECT_EQ(modified.size(), 1);

    // Nothing sent (no session): the edit reaches the buffer but stays unsaved.
    EXPECT_TRUE(page.needsSave());
    save->click();
    EXPECT_TRUE(page.isModified());
    EXPECT_TRUE(save->isEnabled());
    EXPECT_EQ(
        FieldTable::text(QByteArray(SectionOffset, '\0') + page.sectionBuffer(), camera::title),
        "42");

    QByteArray sent;
    page.setSectionWriter([&sent](setup::Section section, const QByteArray &bytes) {
        EXPECT_EQ(section, setup::Section::Camera);
        sent = bytes;
        return 1;
    });
    save->click();
    EXPECT_FALSE(page.isModified());
    EXPECT_FALSE(save->isEnabled());
    EXPECT_FALSE(page.needsSave());
    EXPECT_EQ(sent, page.sectionBuffer());
}

TEST(SetupPage, DefaultShowsTheDefaultSliceAndLeavesTheBuffer)
{
    QByteArray file = setup::FactoryDefaults::record();
    FieldTable::setBytes(file, camera::title, "Front", 0);
    FieldTable::setBytes(file, camera::title, "Back", 1);
    const struct
    {
        const char *what;
        std::optional<QByteArray> content;
        QString first, second;
    } cases[] = {
        {"whole file", file, u"Front"_s, u"Back"_s},
        // A short or missing file shows zeros where it has no bytes.
        {"short file", file.left(SectionOffset + 10), u"Front"_s, {}},
        {"missing file", std::nullopt, {}, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        CRemoteCameraCameraDlg page;
        if (c.content)
            page.setDefaultSource([&c] { return *c.content; });
        page.load(Record, 16);
        pagetest::button(&page, u"Default"_s)->click();
        EXPECT_EQ(title(&page, 1)->text(), c.first);
        EXPECT_EQ(title(&page, 2)->text(), c.second);
        EXPECT_TRUE(pagetest::button(&page, u"Save"_s)->isEnabled());
        EXPECT_TRUE(page.needsSave());
        EXPECT_EQ(page.sectionBuffer(), Record.mid(SectionOffset, SectionLength));
    }
}

TEST(SetupPage, ShowsOnlyTheRecordersChannelRows)
{
    for (auto [channels, shown] : {std::pair {1, 1}, {4, 4}, {16, 16}, {0, 1}, {20, 16}}) {
        // Shown before its first load, as the main window shows its pages.
        CRemoteCameraCameraDlg page;
        page.show();
        page.load(Record, channels);
        for (int i = 1; i <= CSetupPage::MaxChannels; ++i)
            EXPECT_EQ(title(&page, i)->isVisible(), i <= shown)
                << channels << " channels, row " << i;
    }
}

// Event Display sends the whole DISPLAY block, which holds both sections of
// Date/Time: every byte of them reaches the page, edited or not, and a field
// the operator changed stays as the operator left it.
TEST(SetupPage, AWriteOverBothSectionsOfAPageReachesAllOfIt)
{
    namespace dateTime = setup::fields::dateTime;
    namespace dst = setup::fields::dst;
    const QByteArray record = setup::FactoryDefaults::record();
    QByteArray sent = record;
    const quint32 month = FieldTable::number(record, dst::endMonth) % 12 + 1;
    FieldTable::setNumber(sent, dst::endMonth, month);
    FieldTable::setNumber(sent, dateTime::timeFormat,
                          1 - FieldTable::number(record, dateTime::timeFormat));
    const setup::SectionInfo &block = setup::SetupRecordMap::section(setup::Section::EventDisplay);
    for (const bool edited : {false, true}) {
        SCOPED_TRACE(edited);
        CRemoteDisplayDateTimeDlg page;
        page.load(record, 16);
        if (edited) {
            auto *format = pagetest::named<QComboBox>(&page, u"Display Format"_s);
            format->setCurrentIndex((format->currentIndex() + 1) % format->count());
            Q_EMIT format->activated(format->currentIndex());
        }
        page.recordWritten(block.offset, sent.mid(block.offset, block.length));
        EXPECT_EQ(page.isModified(), edited);
        page.gather();
        EXPECT_EQ(pagetest::number(page, dst::endMonth), month);
        EXPECT_EQ(pagetest::number(page, dateTime::timeFormat),
                  FieldTable::number(sent, dateTime::timeFormat));
        EXPECT_EQ(pagetest::number(page, dateTime::dateFormat)
                      != FieldTable::number(record, dateTime::dateFormat),
                  edited);
    }
}
