// The SYSTEM pages in the whole window against recorder-sim: a session opens
// on the Authority page, and the window's Save writes the users, audio and
// buzzer sections itself, exactly those bytes.

#include "tests/app/MainWindowFixture.h"

#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "pages/common/CSetupPage.h"
#include "pages/system/CRemoteSystemPasswdDlg.h"
#include "setup/SetupRecordMap.h"
#include "tests/pages/PageTestSupport.h"

#include <QComboBox>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::SetupRecordMap;

namespace {

constexpr int SystemMenu = 0;

QAction *systemItem(const CRemoteKSetupDlg &window, const QString &text)
{
    for (QAction *action : window.pageMenus()->menu(SystemMenu)->actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

// The record `before` with `section` replaced by what the page holds.
QByteArray withSection(QByteArray before, const CSetupPage &page)
{
    const setup::SectionInfo &info = SetupRecordMap::section(*page.section());
    return before.replace(info.offset, info.length, page.sectionBuffer());
}

} // namespace

using SystemPagesWindow = MainWindowFixture;

TEST_F(SystemPagesWindow, SessionOpensOnAuthorityAndANewAdminPasswordWorksAtTheNextLogin)
{
    SimProcess sim;
    const QByteArray initial = sim.storedRecord();
    ASSERT_TRUE(connectTo(sim));
    EXPECT_EQ(window->windowTitle(), u"127.0.0.1 - Remote Setup / System / Authority"_s);
    EXPECT_EQ(window->currentPageId(), 0x8003);
    auto *page = qobject_cast<CRemoteSystemPasswdDlg *>(window->pageHost()->currentPage());
    ASSERT_NE(page, nullptr);

    const QString password = u"Kw9-new"_s;
    for (const char *label : {"New Password", "Confirm Password"})
        QTest::keyClicks(named<QLineEdit>(page, QString::fromLatin1(label)), password);
    pagetest::button(page, u"Password Check"_s)->click();
    ASSERT_EQ(messages, QStringList {u"PASSWORD CHANGE SUCCESS"_s});
    QTest::mouseClick(window->saveButton(), Qt::LeftButton);

    QByteArray expected = initial;
    expected.replace(32, 12, password.toLatin1().leftJustified(12, '\0'));
    EXPECT_TRUE(
        testsupport::waitFor([&] { return sim.storedRecord() == expected; }, SessionTimeoutMs));
    EXPECT_TRUE(testsupport::waitFor([&] { return messages.contains(u"Complete Save   \t"_s); },
                                     SessionTimeoutMs));

    const QString file = sim.dirPath() + u"/password"_s;
    testsupport::writeFile(file, password.toLatin1() + '\n');
    EXPECT_EQ(sim.cli({u"info"_s}, {u"--password-file"_s, file}).exitCode, 0);
    testsupport::writeFile(file, "\n");
    EXPECT_NE(sim.cli({u"info"_s}, {u"--password-file"_s, file}).exitCode, 0);
}

TEST_F(SystemPagesWindow, WindowSaveWritesExactlyTheAudioAndBuzzerSections)
{
    SimProcess sim;
    ASSERT_TRUE(connectTo(sim));
    QByteArray before = sim.storedRecord();
    for (const auto &[item, control, pageId] :
         {std::tuple {"Audio", "Live Output", 0x8004}, {"Buzzer", "Key Tone", 0x8005}}) {
        SCOPED_TRACE(item);
        QAction *action = systemItem(*window, QString::fromLatin1(item));
        ASSERT_NE(action, nullptr);
        action->trigger();
        EXPECT_EQ(window->currentPageId(), pageId);
        CSetupPage *page = window->pageHost()->currentPage();
        auto *list = named<QComboBox>(page, QString::fromLatin1(control));
        ASSERT_NE(list, nullptr);
        QTest::keyClick(list, list->currentIndex() + 1 < list->count() ? Qt::Key_Down : Qt::Key_Up);
        messages.clear();
        QTest::mouseClick(window->saveButton(), Qt::LeftButton);

        const QByteArray expected = withSection(before, *page);
        EXPECT_NE(expected, before);
        EXPECT_TRUE(
            testsupport::waitFor([&] { return sim.storedRecord() == expected; }, SessionTimeoutMs));
        EXPECT_TRUE(testsupport::waitFor([&] { return messages.contains(u"Complete Save   \t"_s); },
                                         SessionTimeoutMs));
        // The window wrote the section itself: the page's own Save is still on.
        EXPECT_TRUE(page->isModified());
        before = expected;
    }
}
