// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/app/MainWindowFixture.h"

#include "app/ConnectionPanel.h"
#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "session/CWork.h"
#include "session/SessionMessage.h"

#include <QLabel>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

void MainWindowFixture::SetUp()
{
    MessageSink::install(this);
    m_previousExit = ProgramExit::install([this](int code) { exitCodes.push_back(code); });
    openWindow();
}

void MainWindowFixture::TearDown()
{
    window.reset();
    ProgramExit::install(m_previousExit);
    MessageSink::install(nullptr);
}

void MainWindowFixture::openWindow()
{
    window.reset();
    window = std::make_unique<CRemoteKSetupDlg>(testsupport::dataDir() + u"/language.config"_s);
    window->show();
}

QStringList MainWindowFixture::labelTexts(const QWidget *root)
{
    QStringList list;
    for (const QLabel *label : root->findChildren<QLabel *>())
        list.append(label->text());
    return list;
}

CSetupPage *MainWindowFixture::showPage(const char *label) const
{
    const int index = PageCatalog::indexOf(label);
    QAction *item = window->pageMenus()->item(index);
    EXPECT_TRUE(item->isEnabled()) << label;
    item->trigger();
    return window->pageHost()->page(index);
}

QLineEdit *MainWindowFixture::field(const QString &name) const
{
    return control<QLineEdit>(window->connectionPanel(), name);
}

QPushButton *MainWindowFixture::panelButton(const QString &text) const
{
    return control<QPushButton>(window->connectionPanel(), text);
}

void MainWindowFixture::connectWith(const QString &address, const QString &port,
                                    const QString &user, const QString &password)
{
    const std::pair<const char *, QString> entries[]
        = {{"ADDRESS", address}, {"PORT NUMBER", port}, {"USER ID", user}, {"PASSWORD", password}};
    for (const auto &[name, text] : entries) {
        QLineEdit *edit = field(QString::fromLatin1(name));
        edit->clear();
        QTest::keyClicks(edit, text);
    }
    QTest::mouseClick(panelButton(u"CONNECT"_s), Qt::LeftButton);
}

::testing::AssertionResult MainWindowFixture::connectTo(const SimProcess &sim,
                                                        const QString &address)
{
    if (!sim.isRunning())
        return ::testing::AssertionFailure() << "recorder-sim is not running";
    connectWith(address, QString::number(sim.port()));
    if (!testsupport::waitFor([&] { return window->pageHost()->currentEntry() >= 0; },
                              SessionTimeoutMs))
        return ::testing::AssertionFailure()
               << "no page on display; messages: " << messages.join(u" | "_s).toStdString();
    return ::testing::AssertionSuccess();
}

// No worker, CONNECT alone enabled, the status texts of no session and
// every entry open again.
bool MainWindowFixture::waitForDisconnectedLook()
{
    ConnectionPanel *panel = window->connectionPanel();
    return testsupport::waitFor(
        [&] {
            const QStringList labels = labelTexts(panel);
            return !window->worker() && !CWork::instance() && panel->connectButton()->isEnabled()
                   && !panel->disconnectButton()->isEnabled() && labels.contains(u"Disconnect"_s)
                   && labels.contains(u"VERSION UNKNOWN"_s)
                   && std::ranges::all_of(panel->findChildren<QLineEdit *>(), &QWidget::isEnabled);
        },
        SessionTimeoutMs);
}

void MainWindowFixture::send(int kind, qintptr wParam, qintptr lParam)
{
    SessionMessage message(SessionMessage::Kind(kind), wParam, lParam);
    QCoreApplication::sendEvent(window.get(), &message);
}
