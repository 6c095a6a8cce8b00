// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/CWork.h"
#include "session/ConnectionRecord.h"
#include "session/KRemoteSocket.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace cli {

class CommandContext;

// One session with a recorder for one command: connects with the global
// options, waits for the setup record with the same connecting wait the
// window uses (bounded by --timeout), prints the session's messages on
// standard error and turns every way a session can end into an exit code.
class CliSession
    : public QObject
    , public MessageSink
{
public:
    explicit CliSession(const CommandContext &context);
    ~CliSession() override;

    // Logs in and waits for the setup record. Returns Success, or the exit
    // code with its message already printed. A recorder whose setup answer
    // is not one whole record gives no session: nothing built on that answer
    // (an export, a whole-record write) could be trusted.
    int open();

    CWork &worker() { return *m_worker; }
    const ConnectionRecord &record() const { return m_record; }

    // Runs the event loop until `done` holds. Returns Success, or NoSession
    // when the session ends or the time runs out first (`what` names the
    // awaited answer in the message).
    int waitUntil(const std::function<bool()> &done, const QString &what);

    // From now on a write acknowledgement whose code is not 1 ends the
    // session before the worker counts it, so that nothing more is sent and
    // no commit follows a refused block.
    void stopAtRefusal();
    // Which acknowledgement since stopAtRefusal() refused (1 for the first);
    // 0 while none did.
    int refusedAcknowledgement() const { return m_refusedAck; }

    void showMessage(const QString &text) override;

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Outcome { Waiting, Ready, Failed, TimedOut };

    int failure(Outcome outcome);
    int noWholeRecord();
    // Whether a keep-alive cannot be sent any more: the recorder or the
    // network closed the connection.
    bool connectionLost();
    QString where() const;

    const CommandContext &m_context;
    ConnectionRecord m_record;
    std::unique_ptr<CWork> m_worker;
    ProgramExit::Hook m_previousExit;
    bool m_sessionEnded = false;
    qint64 m_deadline = 0;
    // Payload size of the recorder's answer with its current settings.
    std::optional<qsizetype> m_setupAnswerSize;
    bool m_watchingWrites = false;
    int m_acksSeen = 0;
    int m_refusedAck = 0;
    // The worker's transport handle, as its notifications name it; used only
    // while the worker's state says the handle is open.
    KRSMGAPI_HANDLE m_handle = nullptr;
    bool m_connectionLost = false;
};

} // namespace cli
