#include "pages/camera/CRemoteCameraCameraDlg.h"

#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "setup/SetupFiles.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"
#include "tests/session/SessionHarness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::FieldTable;
namespace camera = setup::fields::camera;

namespace {

constexpr int SectionOffset = 1300;
constexpr int SectionLength = 768;

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
    QByteArray record = setup::FactoryDefaults::record().replace(SectionOffset, SectionLength,
                                                                 pagetest::pattern(SectionLength));
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

QByteArray cameraSlice(const QByteArray &record)
{
    return record.mid(SectionOffset, SectionLength);
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
        page.setDefaultSource([] {
            return setup::SetupFiles::readDefaultFile(testsupport::dataDir()
                                                      + u"/DEFDVRSETUP.DAT"_s)
                .bytes;
        });
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
    QByteArray expected = cameraSlice(record);
    expected[2 * 48 + 32] = 0;
    EXPECT_EQ(page.sectionBuffer(), expected);

    QTest::keyClick(control<QComboBox>(&page, "Audio", 1), Qt::Key_Down);
    EXPECT_TRUE(page.isModified());
}

TEST_F(CameraPage, FourChannelRecorderGetsOnlyItsChannelsAndNoDefaultsUntilSave)
{
    const QByteArray record = cameraRecord({});
    SimProcess sim({u"--channels"_s, u"4"_s}, record);
    CWork &work = window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());
    page.setSectionWriter([&work](setup::Section section, const QByteArray &bytes) {
        return work.writeSection(section, bytes);
    });
    page.load(work.mirror(), int(window.record.channelCount));
    for (int channel = 1; channel <= 16; ++channel)
        EXPECT_EQ(title(&page, channel)->isVisible(), channel <= 4) << channel;

    pagetest::button(&page, u"Default"_s)->click();
    EXPECT_EQ(title(&page, 1)->text(), u"CAM 01"_s);
    EXPECT_EQ(page.sectionBuffer(), cameraSlice(record));
    EXPECT_EQ(work.mirror(), record);
    page.cancel();

    title(&page, 2)->selectAll();
    QTest::keyClicks(title(&page, 2), u"Back Door"_s);
    pagetest::button(&page, u"Save"_s)->click();
    QByteArray expected = cameraSlice(record);
    expected.replace(48, 20, QByteArray("Back Door").leftJustified(20, '\0'));
    EXPECT_TRUE(testsupport::waitFor([&] { return cameraSlice(sim.storedRecord()) == expected; }));
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
