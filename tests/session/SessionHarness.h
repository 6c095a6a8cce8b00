// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/CWork.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"
#include "session/SessionMessage.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

// Stands in for the main window: records the session messages, the texts of
// the notices and message boxes, and the program ends that a session produces.
class SessionHarness
    : public QObject
    , public MessageSink
{
public:
    SessionHarness();
    ~SessionHarness() override;

    void showMessage(const QString &text) override { messages.append(text); }

    // A worker connected to 127.0.0.1:`port` as `user`/`password`.
    CWork &connect(quint16 port, const QByteArray &user = "Admin",
                   const QByteArray &password = QByteArray());
    bool waitForReady();

    std::unique_ptr<CWork> worker;
    ConnectionRecord record;
    QStringList messages;
    std::vector<int> sessionMessages;
    std::optional<int> exitCode;
    // Short, so that a lost connection is noticed within the test.
    int keepAliveMs = 100;

protected:
    bool event(QEvent *event) override;

private:
    ProgramExit::Hook m_previousExit;
};
