// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/session/SessionHarness.h"

#include "session/SessionNotice.h"
#include "tests/TestSupport.h"

SessionHarness::SessionHarness()
{
    MessageSink::install(this);
    m_previousExit = ProgramExit::install([this](int code) { exitCode = code; });
}

SessionHarness::~SessionHarness()
{
    worker.reset();
    ProgramExit::install(m_previousExit);
}

CWork &SessionHarness::connect(quint16 port, const QByteArray &user, const QByteArray &password)
{
    worker = std::make_unique<CWork>();
    worker->setMainWindow(this);
    worker->setKeepAliveInterval(keepAliveMs);
    record.address = "127.0.0.1";
    record.port = port;
    record.memberId = user;
    record.password = password;
    worker->connectSession(&record);
    return *worker;
}

bool SessionHarness::waitForReady()
{
    return testsupport::waitFor(
        [&] { return worker && worker->setupReceived() == 1 && worker->clockValid(); });
}

bool SessionHarness::event(QEvent *event)
{
    if (!SessionMessage::isSessionMessage(event))
        return QObject::event(event);
    const auto *message = static_cast<const SessionMessage *>(event);
    if (message->kind() == SessionMessage::Notice)
        messages.append(SessionNotice::fromMessage(*message).text());
    else
        sessionMessages.push_back(int(event->type()));
    return true;
}
