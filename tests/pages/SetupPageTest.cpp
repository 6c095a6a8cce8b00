
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int SectionOffset = 1300;
constexpr int SectionLength = 768;
const QByteArray Record = pagetest::pattern(setup::SetupRecordMap::RecordSize);

// A page over the camera section with one edit per channel for byte i of the
// section; every edit change marks the page modified, filling included.
class ProbePage : public CSetupPage
{
public:
    ProbePage() { setSection(setup::Section::Camera); }

    std::array<QLineEdit *, MaxChannels> edits {};
    QByteArray shown;

protected:
    void buildControls() override
    {
        auto *layout = new QVBoxLayout(contentArea());
        for (int i = 0; i < MaxChannels; ++i) {
            edits[i] = new QLineEdit(contentArea());
            layout->addWidget(edits[i]);
            addChannelRow(i, {edits[i]});
            connect(edits[i], &QLineEdit::textChanged, this, [this] { markModified(); });
        }
    }
    void fillControls(QByteArrayView section, Source) override
    {
        shown = section.toByteArray();
        for (int i = 0; i < channelCount(); ++i)
            edits[i]->setText(QString::number(quint8(section[i])));
    }
    void gatherControls(QByteArray &section) override
    {
        for (int i = 0; i < channelCount(); ++i)
            section[i] = char(edits[i]->text().toInt());
    }
};

} // namespace

TEST(SetupPage, FillLeavesThePageUnmodifiedUntilAnEditAndSaveClearsIt)
{
    ProbePage page;
    QSignalSpy modified(&page, &CSetupPage::modifiedChanged);
    page.load(Record, 16);
    QPushButton *save = pagetest::button(&page, u"Save"_s);
    EXPECT_FALSE(page.isModified());
    EXPECT_FALSE(save->isEnabled());
    EXPECT_TRUE(modified.isEmpty());

    page.edits[0]->clear();
    QTest::keyClicks(page.edits[0], u"42"_s);
    EXPECT_TRUE(save->isEnabled());
    EXPECT_EQ(modified.size(), 1);

    // Nothing sent (no session): the edit reaches the buffer but stays unsaved.
    EXPECT_TRUE(page.needsSave());
    save->click();
    EXPECT_TRUE(page.isModified());
    EXPECT_TRUE(save->isEnabled());
    EXPECT_EQ(page.sectionBuffer(), "\x2a" + Record.mid(SectionOffset + 1, SectionLength - 1));

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
    const QByteArray file(setup::SetupRecordMap::RecordSize, '\x11');
    const struct
    {
        const char *what;
        std::optional<QByteArray> content;
        QByteArray shown;
    } cases[] = {
        {"whole file", file, file.mid(SectionOffset, SectionLength)},
        // A short or missing file shows zeros where it has no bytes.
        {"short file", file.left(SectionOffset + 10),
         QByteArray(10, '\x11') + QByteArray(SectionLength - 10, '\0')},
        {"missing file", std::nullopt, QByteArray(SectionLength, '\0')},
    };
    for (const auto &c : cases) {
        ProbePage page;
        if (c.content)
            page.setDefaultSource([&c] { return *c.content; });
        page.load(Record, 16);
        pagetest::button(&page, u"Default"_s)->click();
        EXPECT_EQ(page.shown, c.shown) << c.what;
        EXPECT_TRUE(pagetest::button(&page, u"Save"_s)->isEnabled()) << c.what;
        EXPECT_TRUE(page.needsSave()) << c.what;
        EXPECT_EQ(page.sectionBuffer(), Record.mid(SectionOffset, SectionLength)) << c.what;
    }
}

TEST(SetupPage, ShowsOnlyTheRecordersChannelRows)
{
    for (auto [channels, shown] : {std::pair {1, 1}, {4, 4}, {16, 16}, {0, 1}, {20, 16}}) {
        // Shown before its first load, as the main window shows its pages.
        ProbePage page;
        page.show();
        page.load(Record, channels);
        for (int i = 0; i < CSetupPage::MaxChannels; ++i)
            EXPECT_EQ(page.edits[i]->isVisible(), i < shown) << channels << " channels, row " << i;
    }
}
