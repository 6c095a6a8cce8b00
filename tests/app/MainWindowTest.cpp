// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/app/MainWindowFixture.h"

#include "app/ConnectionPanel.h"
#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "firmware/PackageBuilder.h"
#include "pages/system/CRemoteSystemConfigDlg.h"
#include "pages/system/CRemoteSystemUpdateDlg.h"
#include "session/CWork.h"
#include "session/SessionMessage.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "tests/session/ScriptedRecorder.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using setup::FieldTable;

namespace {

QStringList texts(const QList<QAction *> &actions)
{
    QStringList list;
    for (const QAction *action : actions)
        list.append(action->text());
    return list;
}

// Every page that exists holds its section of the worker's mirror.
void expectPagesHoldTheMirror(const CRemoteKSetupDlg &window)
{
    const QByteArray &mirror = window.worker()->mirror();
    for (int i = 0; i < 26; ++i) {
        const CSetupPage *page = window.pageHost()->page(i);
        if (!page || !page->section())
            continue;
        EXPECT_EQ(page->sectionBuffer(),
                  mirror.sliced(page->recordOffset(), page->sectionBuffer().size()))
            << i;
        EXPECT_FALSE(page->isModified()) << i;
    }
}

constexpr int NetworkMenu = 5;

// Picks the next item of the list named `name` on `page`, as the operator does.
void pickNext(const CSetupPage *page, const QString &name)
{
    for (QComboBox *list : page->findChildren<QComboBox *>()) {
        if (list->accessibleName() == name) {
            list->setCurrentIndex((list->currentIndex() + 1) % list->count());
            Q_EMIT list->activated(list->currentIndex());
            return;
        }
    }
    ADD_FAILURE() << "no list named " << name.toStdString();
}

} // namespace

using MainWindowTest = MainWindowFixture;

TEST_F(MainWindowTest, BeforeConnectingTheMenusAreDisabledAndThePanelChecksItsEntries)
{
    // The menus' names and order: TextsFollowTheStartupLanguage.
    qsizetype items = 0;
    for (const QAction *menu : window->pageMenus()->actions()) {
        for (const QAction *item : menu->menu()->actions()) {
            EXPECT_FALSE(item->isEnabled()) << item->text().toStdString();
            EXPECT_EQ(item, window->pageMenus()->item(int(items++)));
        }
    }
    EXPECT_EQ(window->windowTitle(), u"Remote Setup"_s);
    EXPECT_FALSE(window->windowIcon().isNull());

    ConnectionPanel *panel = window->connectionPanel();
    EXPECT_TRUE(waitForDisconnectedLook());
    for (const QWidget *control : panel->findChildren<QWidget *>()) {
        if (const auto *button = qobject_cast<const QAbstractButton *>(control)) {
            EXPECT_FALSE(button->text().isEmpty());
        } else if (qobject_cast<const QLineEdit *>(control)) {
            EXPECT_FALSE(control->accessibleName().isEmpty());
        }
    }
    EXPECT_EQ(field(u"PASSWORD"_s)->echoMode(), QLineEdit::Password);
    QTest::keyClicks(field(u"PORT NUMBER"_s), u"9a0-b0"_s);
    EXPECT_EQ(field(u"PORT NUMBER"_s)->text(), u"900"_s);

    // The entries go through the connection settings' checks (tested on
    // their own) before any connection: a bad one shows "Connect Fail" and
    // ends the program.
    connectWith(u"127.0.0.1"_s, u"0"_s);
    EXPECT_EQ(messages, QStringList {u"Connect Fail"_s});
    EXPECT_EQ(exitCodes, std::vector<int> {0});
    EXPECT_EQ(window->worker(), nullptr);

    // DDNS reaches host name dot domain on the standard port.
    EXPECT_TRUE(field(u"PORT NUMBER"_s)->isVisible());
    EXPECT_FALSE(field(u"Host name"_s)->isVisible());
    QTest::mouseClick(control<QAbstractButton>(panel, u"DDNS"_s), Qt::LeftButton);
    EXPECT_FALSE(field(u"PORT NUMBER"_s)->isVisible());
    EXPECT_TRUE(field(u"Host name"_s)->isVisible());
    QTest::keyClicks(field(u"Host name"_s), u"dvr1"_s);
    connectWith(u"ddns.invalid"_s, {});
    ASSERT_NE(window->worker(), nullptr);
    EXPECT_EQ(window->worker()->address(), "dvr1.ddns.invalid");
    EXPECT_EQ(window->worker()->port(), 9000u);
}

TEST_F(MainWindowTest, TextsFollowTheStartupLanguage)
{
    qputenv("REMOTE_SETUP_LANGUAGE", "1");
    openWindow();
    qunsetenv("REMOTE_SETUP_LANGUAGE");
    EXPECT_EQ(texts(window->pageMenus()->actions()),
              (QStringList {u"SYSTEM"_s, u"ANZEIGE"_s, u"KAMERA"_s, u"AUFNAHME"_s, u"GERÄT"_s,
                            u"NETZWERK"_s}));
    EXPECT_EQ(window->connectionPanel()->connectButton()->text(), u"VERBINDEN"_s);
    EXPECT_EQ(window->saveButton()->text(), u"Speichern"_s);
}

// A four-channel recorder has no Stream page.
TEST_F(MainWindowTest, ConnectFillsThePagesAndSessionEndReturnsThePanelToItsDisconnectedLook)
{
    for (const int channels : {16, 4}) {
        SCOPED_TRACE(channels);
        openWindow();
        SimProcess sim({u"--channels"_s, QString::number(channels)});
        // Leading zeros still name 127.0.0.1, in 15 characters.
        ASSERT_TRUE(connectTo(sim, u"127.000.000.001"_s));

        PageHost *host = window->pageHost();
        EXPECT_EQ(host->currentEntry(), host->firstPage());
        // Only the page on display is built; the others hold their section.
        for (int i = 0; i < 26; ++i)
            EXPECT_EQ(host->page(i) && host->page(i)->isBuilt(), i == host->firstPage()) << i;
        ASSERT_NE(window->worker(), nullptr);
        EXPECT_EQ(window->worker()->mirror(), sim.storedRecord());
        expectPagesHoldTheMirror(*window);
        EXPECT_EQ(host->currentPage()->channelCount(), channels);

        ConnectionPanel *panel = window->connectionPanel();
        EXPECT_FALSE(panel->connectButton()->isEnabled());
        EXPECT_TRUE(panel->disconnectButton()->isEnabled());
        EXPECT_FALSE(field(u"ADDRESS"_s)->isEnabled());
        EXPECT_TRUE(labelTexts(panel).contains(u"S/W Version 1.0.0.0"_s));
        EXPECT_TRUE(testsupport::waitFor([&] { return labelTexts(panel).contains(u"Ready"_s); }));

        showPage("Camera Setup");
        // The title keeps fourteen characters of the address.
        EXPECT_EQ(window->windowTitle(), u"127.000.000.00 - Remote Setup / Camera / Setup"_s);
        EXPECT_EQ(window->currentPageId(), 0x8009);
        for (int i = 0; i < 26; ++i)
            EXPECT_EQ(window->pageMenus()->item(i)->isEnabled(), host->page(i) != nullptr) << i;
        EXPECT_EQ(texts(window->pageMenus()->menu(NetworkMenu)->actions()),
                  (QStringList {u"Notification"_s, u"E-Mail"_s, u"Event"_s}
                   + (channels == 4 ? QStringList {} : QStringList {u"Stream"_s})));

        // The window's Save sends the page on display.
        auto *title = control<QLineEdit>(host->currentPage(), u"Camera Title 03"_s);
        title->selectAll();
        QTest::keyClicks(title, u"Loading Bay"_s);
        QTest::mouseClick(window->saveButton(), Qt::LeftButton);
        EXPECT_TRUE(testsupport::waitFor(
            [&] { return sim.storedRecord().mid(1300 + 48 * 2, 12) == "Loading Bay\0"_ba; },
            SessionTimeoutMs));
        EXPECT_TRUE(testsupport::waitFor(
            [&] { return messages == QStringList {u"Complete Save   \t"_s}; }, SessionTimeoutMs));
        messages.clear();

        // Only the pages shown last keep their controls (Update and
        // Configuration always do); a page built again shows what was saved.
        for (const QAction *menu : window->pageMenus()->actions()) {
            for (QAction *item : menu->menu()->actions()) {
                if (item->isEnabled())
                    item->trigger();
            }
        }
        int built = 0;
        for (int i = 0; i < 26; ++i) {
            const CSetupPage *page = host->page(i);
            built += page && page->isBuilt() && page->hasSaveAction() ? 1 : 0;
        }
        EXPECT_LE(built, 2);
        EXPECT_EQ(control<QLineEdit>(showPage("Camera Setup"), u"Camera Title 03"_s)->text(),
                  u"Loading Bay"_s);

        // The session ends by the DISCONNECT button or by its own end message;
        // a new one then starts from the same window, its pages as built.
        ASSERT_TRUE(testsupport::waitFor([&] { return window->saveButton()->isEnabled(); }));
        if (channels == 16)
            QTest::mouseClick(panelButton(u"DISCONNECT"_s), Qt::LeftButton);
        else
            send(SessionMessage::SessionEnded);
        EXPECT_TRUE(waitForDisconnectedLook());
        // Nothing could be saved any more: the pages say so.
        EXPECT_FALSE(window->saveButton()->isEnabled());
        CSetupPage *page = host->currentPage();
        EXPECT_FALSE(page->isEnabled());
        ASSERT_TRUE(connectTo(sim));
        EXPECT_EQ(host->currentPage(), page);
        EXPECT_TRUE(messages.isEmpty()) << messages.join(u" | "_s).toStdString();
        EXPECT_TRUE(exitCodes.empty());
    }
}

TEST_F(MainWindowTest, RefusedLoginShowsItsMessageAndEndsTheSession)
{
    SimProcess sim({u"--refuse-login"_s, u"2"_s});
    // The operator presses DISCONNECT while the refusal is on screen.
    whileShown = [this](const QString &) {
        send(SessionMessage::SessionEnded);
        QCoreApplication::processEvents();
    };
    connectWith(u"127.0.0.1"_s, QString::number(sim.port()));
    ASSERT_TRUE(testsupport::waitFor([&] { return !messages.isEmpty(); }, SessionTimeoutMs));
    EXPECT_EQ(messages, QStringList {u"Login failed by password error"_s});
    // Whether the wait ends the program first is a race; the session ends either way.
    EXPECT_TRUE(waitForDisconnectedLook());
    for (int code : exitCodes)
        EXPECT_EQ(code, 0);
    EXPECT_EQ(window->pageHost()->currentEntry(), -1);
}

TEST_F(MainWindowTest, ConnectingNeverHoldsTheWindow)
{
    // A listener that never completes the handshake, then a recorder that
    // answers every request three seconds late.
    testsupport::HangingListener hanging;
    SimProcess slow({u"--delay-ms"_s, u"3000"_s});
    for (const quint16 port : {hanging.port(), slow.port()}) {
        SCOPED_TRACE(port);
        int ticks = 0;
        QTimer ticker;
        QObject::connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
        ticker.start(10);
        connectWith(u"127.0.0.1"_s, QString::number(port));
        const CWork *worker = window->worker();
        ASSERT_NE(worker, nullptr);
        QTest::mouseClick(panelButton(u"CONNECT"_s), Qt::LeftButton);
        EXPECT_EQ(window->worker(), worker) << "a second CONNECT started another session";
        ASSERT_TRUE(testsupport::waitFor([&] { return panelButton(u"DISCONNECT"_s)->isEnabled(); },
                                         SessionTimeoutMs));
        // The loop kept running through the wait's locking round.
        EXPECT_GT(ticks, 50);
        EXPECT_EQ(window->pageHost()->currentEntry(), -1);
        QTest::mouseClick(panelButton(u"DISCONNECT"_s), Qt::LeftButton);
        EXPECT_TRUE(waitForDisconnectedLook());
    }
    EXPECT_TRUE(exitCodes.empty());
    EXPECT_TRUE(messages.isEmpty());

    // Closing the window ends a session still connecting.
    connectWith(u"127.0.0.1"_s, QString::number(hanging.port()));
    window->close();
    EXPECT_EQ(window->worker(), nullptr);
    EXPECT_EQ(CWork::instance(), nullptr);
}

TEST_F(MainWindowTest, ClosingTheWindowStopsARunningUploadFirst)
{
    // Every answer late, so that the upload is still running.
    SimProcess sim({u"--delay-ms"_s, u"200"_s});
    ASSERT_TRUE(connectTo(sim));
    auto *page = static_cast<CRemoteSystemUpdateDlg *>(showPage("Update"));
    ASSERT_NE(page, nullptr);

    QTemporaryDir dir;
    const QString path = dir.filePath(u"update.KRP"_s);
    firmware::PackageBuilder builder(firmware::FirmwareVersion {{9, 0, 0, 0}});
    builder.addGeneratedComponent(2, firmware::FirmwareVersion {{9, 0, 0, 0}}, 1 << 20);
    ASSERT_TRUE(builder.write(path, nullptr));
    page->setFileChooser([&](QWidget *, const QString &) { return path; });
    control<QPushButton>(page, u"Open"_s)->click();
    control<QPushButton>(page, u"Start"_s)->click();
    ASSERT_TRUE(testsupport::waitFor([&] { return page->isUploading(); }, SessionTimeoutMs));
    window.reset();
    EXPECT_EQ(CWork::instance(), nullptr);
}

// What a cut file holds reaches the recorder and every page once the
// operator agrees.
TEST_F(MainWindowTest, AShortImportFileIsSentOnlyWhenTheOperatorSaysYes)
{
    SimProcess sim;
    ASSERT_TRUE(connectTo(sim));
    const QByteArray before = sim.storedRecord();
    QByteArray imported = before;
    FieldTable::setBytes(imported, setup::fields::camera::title, "Imported");
    QTemporaryDir dir;
    const QString path = dir.filePath(u"half.dat"_s);
    const QByteArray file = setup::ExportFile::build(imported);
    testsupport::writeFile(path, file.first(file.size() / 2));

    auto *page = static_cast<CRemoteSystemConfigDlg *>(showPage("Configuration"));
    ASSERT_NE(page, nullptr);
    EXPECT_FALSE(window->saveButton()->isEnabled());
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        SCOPED_TRACE(answer);
        control<QPushButton>(page, u"Import"_s)->click();
        QFileDialog *dialog = page->openFileDialog();
        ASSERT_NE(dialog, nullptr);
        dialog->selectFile(path);
        QMetaObject::invokeMethod(dialog, "accept");
        QMessageBox *question = page->openQuestion();
        ASSERT_NE(question, nullptr);
        EXPECT_TRUE(question->text().contains(QString::number(file.size() - file.size() / 2)));
        EXPECT_TRUE(question->text().contains(u"127.0.0.1:%1"_s.arg(sim.port())));
        question->button(answer)->click();
        EXPECT_EQ(window->worker()->transferRunning(), answer == QMessageBox::Yes);
    }
    EXPECT_TRUE(testsupport::waitFor([&] { return !messages.isEmpty(); }, SessionTimeoutMs));
    EXPECT_EQ(messages, QStringList {u"Import Success"_s});
    EXPECT_EQ(FieldTable::text(sim.storedRecord(), setup::fields::camera::title), "Imported");
    const CSetupPage *camera = showPage("Camera Setup");
    EXPECT_EQ(control<QLineEdit>(camera, u"Camera Title 01"_s)->text(), u"Imported"_s);
    expectPagesHoldTheMirror(*window);
}

// Factory Default names the recorder and sends nothing before Yes; DISCONNECT
// and closing the window ask before edits not saved are dropped.
TEST_F(MainWindowTest, WholeSetupsAndUnsavedEditsAreDroppedOnlyWhenTheOperatorSaysYes)
{
    CSetupPage::setDefaultSetupPath(testsupport::dataDir() + u"/DEFDVRSETUP.DAT"_s);
    SimProcess sim;
    ASSERT_TRUE(connectTo(sim));
    auto *config = static_cast<CRemoteSystemConfigDlg *>(showPage("Configuration"));
    ASSERT_NE(config, nullptr);
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        control<QPushButton>(config, u"Factory Default"_s)->click();
        QMessageBox *question = config->openQuestion();
        ASSERT_NE(question, nullptr);
        EXPECT_TRUE(question->text().contains(u"127.0.0.1:%1"_s.arg(sim.port())));
        EXPECT_EQ(question->defaultButton(), question->button(QMessageBox::No));
        EXPECT_FALSE(window->worker()->transferRunning());
        question->button(answer)->click();
        EXPECT_EQ(window->worker()->transferRunning(), answer == QMessageBox::Yes);
    }
    ASSERT_TRUE(testsupport::waitFor([&] { return !messages.isEmpty(); }, SessionTimeoutMs));
    EXPECT_EQ(messages, QStringList {u"Default Setup Success"_s});

    CSetupPage *camera = showPage("Camera Setup");
    QTest::keyClicks(control<QLineEdit>(camera, u"Camera Title 02"_s), u"x"_s);
    CSetupPage *buzzer = showPage("Buzzer");
    pickNext(buzzer, u"Key Tone"_s);
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        QTest::mouseClick(panelButton(u"DISCONNECT"_s), Qt::LeftButton);
        QMessageBox *question = window->openQuestion();
        ASSERT_NE(question, nullptr);
        EXPECT_TRUE(question->text().contains(u"Buzzer, Camera Setup"_s))
            << question->text().toStdString();
        question->button(answer)->click();
        EXPECT_EQ(window->worker() != nullptr, answer == QMessageBox::No);
    }
    EXPECT_TRUE(waitForDisconnectedLook());
    // The edits outlive the session, and closing would drop them.
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        window->close();
        QMessageBox *question = window->openQuestion();
        ASSERT_NE(question, nullptr);
        question->button(answer)->click();
        EXPECT_EQ(window->isVisible(), answer == QMessageBox::No);
    }
    CSetupPage::setDefaultSetupPath({});
}

// A refused save is told by the page's name, once, and stays to be saved;
// the mirror, and the pages that share its bytes, return to what the
// recorder holds. Date/Time's two writes are announced once.
TEST_F(MainWindowTest, EverySaveIsToldOnceAndARefusedOneIsTakenBack)
{
    const QByteArray record = setup::FactoryDefaults::record();
    ScriptedRecorder recorder;
    recorder.record = record;
    // Where both the DISPLAY block and Date/Time's first section start.
    const quint32 display = 604;
    bool refuse = true;
    recorder.onFrame = [&](const session::Frame &frame) {
        if (refuse && frame.command == RemoteCommand::SetupWrite && frame.param.words[2] == display)
            recorder.send(RemoteCommand::SetupWriteAck, PACKET_PARAM {{0}});
        else
            recorder.answerAsRecorder(frame);
    };
    connectWith(u"127.0.0.1"_s, QString::number(recorder.port()));
    ASSERT_TRUE(testsupport::waitFor([&] { return window->pageHost()->currentEntry() >= 0; },
                                     SessionTimeoutMs));
    QSignalSpy answers(window->worker(), &CWork::writeAcknowledged);
    // The answers' messages reach the window as posted events.
    const auto answered = [&](int count) {
        const bool all
            = testsupport::waitFor([&] { return answers.count() >= count; }, SessionTimeoutMs);
        QCoreApplication::sendPostedEvents(window.get());
        return all;
    };
    const auto refusal = [](const QString &page) {
        return u"The recorder refused to save %1; the page keeps your changes."_s.arg(page);
    };

    // The block is refused; then the first of Date/Time's writes, the second applied.
    const struct
    {
        const char *page;
        QString list;
        int answers;
    } refusals[]
        = {{"Event Display", u"Main Output"_s, 1}, {"Date / Time", u"Display Format"_s, 3}};
    for (const auto &r : refusals) {
        SCOPED_TRACE(r.page);
        messages.clear();
        CSetupPage *page = showPage(r.page);
        pickNext(page, r.list);
        QTest::mouseClick(window->saveButton(), Qt::LeftButton);
        ASSERT_TRUE(answered(r.answers));
        EXPECT_EQ(messages, QStringList {refusal(QString::fromLatin1(r.page))});
        EXPECT_TRUE(page->isModified());
        EXPECT_TRUE(control<QPushButton>(page, u"Save"_s)->isEnabled());
        EXPECT_EQ(window->worker()->mirror(), record);
    }
    CSetupPage *event = window->pageHost()->page(PageCatalog::indexOf("Event Display"));
    CSetupPage *dateTime = window->pageHost()->currentPage();
    // The edited block page keeps its own edit and has the recorder's bytes back.
    EXPECT_TRUE(event->needsSave());
    EXPECT_EQ(event->sectionBuffer().first(52), record.mid(display, 52));

    refuse = false;
    messages.clear();
    QTest::mouseClick(window->saveButton(), Qt::LeftButton);
    ASSERT_TRUE(answered(5));
    EXPECT_EQ(messages, QStringList {u"Complete Save   \t"_s});
    EXPECT_FALSE(dateTime->isModified());
    EXPECT_NE(window->worker()->mirror(), record);
    EXPECT_EQ(event->sectionBuffer().first(52), dateTime->sectionBuffer());
}

TEST_F(MainWindowTest, PageMessagesActOnTheButtons)
{
    SimProcess sim;
    ASSERT_TRUE(connectTo(sim));
    // The buttons act only on a page with a Save action.
    showPage("Camera Setup");
    struct Step
    {
        int kind;
        qintptr wParam;
        qintptr lParam;
        bool buttonsEnabled;
        bool defaultVisible;
    };
    const Step steps[] = {
        {SessionMessage::DefaultButton, 1, 0, true, false},
        {SessionMessage::DefaultButton, 0, 0, true, true},
        {SessionMessage::DefaultButton, 1, 0, true, false},
        {SessionMessage::DefaultButton, 2, 0, true, true},
        {SessionMessage::SaveButtons, 1, 1, false, true},
        {SessionMessage::SaveButtons, 0, 0, false, true}, // without lParam 1: ignored
        {SessionMessage::SaveButtons, 0, 1, true, true},
        {SessionMessage::SaveButtons, 1, 2, true, true},
    };
    for (const Step &step : steps) {
        send(step.kind, step.wParam, step.lParam);
        SCOPED_TRACE(testing::Message()
                     << step.kind << " w " << step.wParam << " l " << step.lParam);
        EXPECT_EQ(window->saveButton()->isEnabled(), step.buttonsEnabled);
        EXPECT_EQ(window->cancelButton()->isEnabled(), step.buttonsEnabled);
        EXPECT_EQ(window->defaultButton()->isEnabled(), step.buttonsEnabled);
        EXPECT_EQ(window->defaultButton()->isVisible(), step.defaultVisible);
    }
}
