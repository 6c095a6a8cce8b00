// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/CRemoteKSetupDlg.h"
#include "pages/common/CSetupPage.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"
#include "tests/SimProcess.h"

#include <QLineEdit>
#include <QPushButton>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

// The real main window with the session's messages recorded and the exit
// hook caught, driven through its widgets as an operator would.
class MainWindowFixture
    : public ::testing::Test
    , public MessageSink
{
protected:
    // Generous: the sanitizers and a busy machine slow every round trip.
    static constexpr int SessionTimeoutMs = 60000;

    void SetUp() override;
    void TearDown() override;
    void showMessage(const QString &text) override
    {
        messages.append(text);
        // What the operator does while the box is open.
        if (whileShown)
            std::exchange(whileShown, {})(text);
    }

    // A new window; the translations come from the built language.config.
    void openWindow();

    // The child of `root` with that accessible name or text.
    template<class T>
    static T *control(const QWidget *root, const QString &name)
    {
        for (T *widget : root->findChildren<T *>()) {
            if (widget->accessibleName() == name || widget->text() == name)
                return widget;
        }
        ADD_FAILURE() << "no control named " << name.toStdString();
        return nullptr;
    }
    static QStringList labelTexts(const QWidget *root);
    QLineEdit *field(const QString &name) const;
    // Chooses the page of that menu label, as the operator does, and returns it.
    CSetupPage *showPage(const char *label) const;
    QPushButton *panelButton(const QString &text) const;
    // Types into the panel's fields (MANUAL mode) and clicks CONNECT.
    void connectWith(const QString &address, const QString &port,
                     const QString &user = QStringLiteral("Admin"), const QString &password = {});
    // Connects to `sim` and waits until the first page is on display.
    ::testing::AssertionResult connectTo(const SimProcess &sim,
                                         const QString &address = u"127.0.0.1"_qs);
    bool waitForDisconnectedLook();
    void send(int kind, qintptr wParam = 0, qintptr lParam = 0);

    std::unique_ptr<CRemoteKSetupDlg> window;
    QStringList messages;
    std::function<void(const QString &)> whileShown;
    std::vector<int> exitCodes;

private:
    ProgramExit::Hook m_previousExit;
};
