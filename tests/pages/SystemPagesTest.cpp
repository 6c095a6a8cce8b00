// SPDX-License-Identifier: GPL-3.0-or-later

// The SYSTEM pages: the four outcomes of Password Check, the page's own copy
// of the account table and the rights grid; in the whole window against
// recorder-sim, a session opens on the Authority page and the window's Save
// writes the users, audio and buzzer sections itself, exactly those bytes.

#include "pages/system/CRemoteSystemPasswdDlg.h"

#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "pages/common/BitGridEditor.h"
#include "pages/system/CRemoteSystemAuthorityDlg.h"
#include "setup/Fields.h"
#include "tests/app/MainWindowFixture.h"
#include "tests/pages/PageTestSupport.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::FieldTable;
namespace users = setup::fields::users;

namespace {

constexpr int Manager1 = 1;
constexpr int User1 = 4;
constexpr quint32 EveryRight = 0x3FFFF;
constexpr quint32 UnnamedBit = 0x80000000;

QByteArray usersRecord()
{
    QByteArray record = setup::FactoryDefaults::record();
    FieldTable::setBytes(record, users::password, QByteArray(12, '\0'), 0);
    FieldTable::setBytes(record, users::password, "ABCDEFGHIJKL", Manager1);
    FieldTable::setBytes(record, users::password, "secret", User1);
    FieldTable::setNumber(record, users::rights, EveryRight, 0);
    // Seventeen rights (no Format HDD) and a bit that stands for none.
    FieldTable::setNumber(record, users::rights, (EveryRight & ~0x20u) | UnnamedBit, Manager1);
    return record;
}

quint32 rightsOf(const QByteArray &section, int account)
{
    QByteArray record(users::base, '\0');
    return FieldTable::number(record + section, users::rights, account);
}

class PasswdPage : public ::testing::Test
{
protected:
    void SetUp() override
    {
        page.load(usersRecord(), 16);
        page.show();
    }

    QLineEdit *edit(const char *label) const
    {
        return named<QLineEdit>(&page, QString::fromLatin1(label));
    }
    void chooseAccount(int account)
    {
        named<QComboBox>(&page, u"User"_s)->setCurrentIndex(account);
    }
    // Typed key by key; characters beyond ASCII as the keyboard sends them.
    void type(const QString &current, const QString &next, const QString &confirm)
    {
        for (const auto &[label, text] : {std::pair {"Current Password", current},
                                          {"New Password", next},
                                          {"Confirm Password", confirm}}) {
            QLineEdit *field = edit(label);
            field->clear();
            for (QChar c : text)
                QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(c),
                                    Qt::NoModifier);
        }
    }
    void check() { pagetest::button(&page, u"Password Check"_s)->click(); }
    QByteArray gathered()
    {
        page.gather();
        return page.sectionBuffer();
    }

    SessionHarness messageBoxes;
    CRemoteSystemPasswdDlg page;
};

} // namespace

TEST_F(PasswdPage, PasswordCheckHasFourOutcomesAndSaveSendsTheWholeTable)
{
    const struct
    {
        int account;
        QString current, next, confirm;
        QString message;
        QByteArray slot; // after the check; empty: unchanged
    } cases[] = {
        {0, u"x"_s, u"abc"_s, u"abc"_s, u"NO MATCH CURRENT PASSWORD"_s, {}},
        {0, u""_s, u"abc"_s, u"abd"_s, u"PASSWORD MATCH \r\n BUT NOT MATCH NEW PASSWORD"_s, {}},
        {User1, u"secret"_s, u"secret"_s, u"secret"_s, u"SAME PASSWORD EXIST"_s, {}},
        // An empty password matches the all-zero slot; code-page bytes go in.
        {0, u""_s, u"Café"_s, u"Café"_s, u"PASSWORD CHANGE SUCCESS"_s,
         QByteArray("Caf\xe9", 4).leftJustified(12, '\0')},
        // Twelve characters fill the slot with no terminator; a 13th cannot be typed.
        {Manager1, u"ABCDEFGHIJKLM"_s, u"0123456789abc"_s, u"0123456789ab"_s,
         u"PASSWORD CHANGE SUCCESS"_s, "0123456789ab"},
    };
    // One after the other: a change survives choosing another account.
    QByteArray expected = page.sectionBuffer();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.message.toStdString());
        chooseAccount(c.account);
        EXPECT_TRUE(edit("Current Password")->text().isEmpty());
        type(c.current, c.next, c.confirm);
        messageBoxes.messages.clear();
        check();
        EXPECT_EQ(messageBoxes.messages, QStringList {c.message});
        if (!c.slot.isEmpty())
            expected.replace(12 * c.account, 12, c.slot);
        EXPECT_EQ(gathered(), expected);
        EXPECT_EQ(page.isModified(), !c.slot.isEmpty());
        // A refusal empties the three fields; a success keeps what was typed.
        const bool kept = !c.slot.isEmpty();
        EXPECT_EQ(edit("Current Password")->text(), kept ? c.current.left(12) : QString());
        EXPECT_EQ(edit("New Password")->text(), kept ? c.next.left(12) : QString());
        EXPECT_EQ(edit("Confirm Password")->text(), kept ? c.confirm : QString());
    }

    // Save sends the whole table; the page shows no password in clear.
    std::optional<setup::Section> written;
    QByteArray sent;
    page.setSectionWriter([&](setup::Section section, const QByteArray &bytes) {
        written = section;
        sent = bytes;
        return 1;
    });
    pagetest::button(&page, u"Save"_s)->click();
    EXPECT_EQ(written, setup::Section::Users);
    EXPECT_EQ(sent, expected);
    EXPECT_FALSE(page.isModified());
    EXPECT_EQ(edit("New Password")->echoMode(), QLineEdit::Password);
}

TEST_F(PasswdPage, RightsGridFollowsTheAllRuleAndAdminsRightsCannotChange)
{
    chooseAccount(Manager1);
    pagetest::button(&page, u"Authority"_s)->click();
    auto *dialog = page.findChild<CRemoteSystemAuthorityDlg *>();
    ASSERT_TRUE(dialog && dialog->isVisible());
    QCheckBox *all = named<QCheckBox>(dialog, u"all"_s);
    QCheckBox *format = named<QCheckBox>(dialog, u"Format HDD"_s);
    EXPECT_EQ(dialog->grid()->bitBoxes().size(), 18);
    EXPECT_FALSE(all->isChecked());
    format->click();
    EXPECT_TRUE(all->isChecked());
    all->click();
    for (const QCheckBox *box : dialog->grid()->bitBoxes())
        EXPECT_FALSE(box->isChecked()) << box->text().toStdString();
    named<QCheckBox>(dialog, u"Network Access"_s)->click();
    EXPECT_FALSE(all->isChecked());
    // A screen reader's toggle action does what a click does.
    const auto toggle = [](QCheckBox *box) {
        QAccessible::queryAccessibleInterface(box)->actionInterface()->doAction(
            QAccessibleActionInterface::toggleAction());
    };
    toggle(all);
    for (const QCheckBox *box : dialog->grid()->bitBoxes())
        EXPECT_TRUE(box->isChecked()) << box->text().toStdString();
    toggle(all);
    EXPECT_FALSE(format->isChecked());
    toggle(named<QCheckBox>(dialog, u"Network Access"_s));
    EXPECT_FALSE(all->isChecked());
    pagetest::button(dialog, u"OK"_s)->click();
    // Only the named bits change; the page takes the word into its table.
    EXPECT_EQ(rightsOf(gathered(), Manager1), 0x100u | UnnamedBit);
    EXPECT_TRUE(page.isModified());

    page.load(usersRecord(), 16);
    chooseAccount(0);
    pagetest::button(&page, u"Authority"_s)->click();
    EXPECT_TRUE(all->isChecked());
    EXPECT_FALSE(all->isEnabled());
    for (const QCheckBox *box : dialog->grid()->bitBoxes())
        EXPECT_FALSE(box->isEnabled());
    pagetest::button(dialog, u"OK"_s)->click();
    EXPECT_EQ(rightsOf(gathered(), 0), EveryRight);
    EXPECT_FALSE(page.isModified());
}

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

} // namespace

using SystemPagesWindow = MainWindowFixture;

// The window's Save writes the users, audio and buzzer sections itself,
// exactly those bytes, and the new admin password works at the next login.
TEST_F(SystemPagesWindow, SessionOpensOnAuthorityAndTheWindowSavesTheSystemSections)
{
    SimProcess sim;
    const QByteArray initial = sim.storedRecord();
    ASSERT_TRUE(connectTo(sim));
    EXPECT_EQ(window->windowTitle(), u"127.0.0.1 - Remote Setup / System / Authority"_s);
    EXPECT_EQ(window->currentPageId(), 0x8003);
    auto *passwd = qobject_cast<CRemoteSystemPasswdDlg *>(window->pageHost()->currentPage());
    ASSERT_NE(passwd, nullptr);

    const QString password = u"Kw9-new"_s;
    for (const char *label : {"New Password", "Confirm Password"})
        QTest::keyClicks(named<QLineEdit>(passwd, QString::fromLatin1(label)), password);
    pagetest::button(passwd, u"Password Check"_s)->click();
    ASSERT_EQ(messages, QStringList {u"PASSWORD CHANGE SUCCESS"_s});
    QTest::mouseClick(window->saveButton(), Qt::LeftButton);
    QByteArray expected = initial;
    expected.replace(32, 12, password.toLatin1().leftJustified(12, '\0'));
    EXPECT_TRUE(
        testsupport::waitFor([&] { return sim.storedRecord() == expected; }, SessionTimeoutMs));
    EXPECT_TRUE(testsupport::waitFor([&] { return messages.contains(u"Complete Save   \t"_s); },
                                     SessionTimeoutMs));

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
        const QByteArray before = expected;
        expected = pagetest::withSection(expected, *page->section(), page->sectionBuffer());
        EXPECT_NE(expected, before);
        EXPECT_TRUE(
            testsupport::waitFor([&] { return sim.storedRecord() == expected; }, SessionTimeoutMs));
        EXPECT_TRUE(testsupport::waitFor([&] { return messages.contains(u"Complete Save   \t"_s); },
                                         SessionTimeoutMs));
        // The window wrote the section itself: the page's own Save is still on.
        EXPECT_TRUE(page->isModified());
    }

    const QString file = sim.dirPath() + u"/password"_s;
    testsupport::writeFile(file, password.toLatin1() + '\n');
    EXPECT_EQ(sim.cli({u"info"_s}, {u"--password-file"_s, file}).exitCode, 0);
    testsupport::writeFile(file, "\n");
    EXPECT_NE(sim.cli({u"info"_s}, {u"--password-file"_s, file}).exitCode, 0);
}
