// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/CWork.h"
#include "session/ConnectionRecord.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace cli {

class CommandContext;

// One session with a recorder for one command: connects with the global
// options, waits for the setup record with the connecting wait's decisions
// (bounded by --timeout), prints the session's messages on standard error
// and turns every way a session can end into an exit code. The session's
// socket works on the command's own thread, and every wait is driven by
// the session's events, never by polling: on its own the command runs the
// thread's event loop while it waits; in a fleet's fiber it yields to the
// loop that serves the whole fleet.
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
    // Waits until `done` holds or `timeout` passes; returns whether it holds.
    // `done` is looked at again after each of the session's events and
    // after wake().
    bool await(const std::function<bool()> &done, std::chrono::milliseconds timeout);
    // For waits on something besides the session's own events: look again.
    void wake();
    // Writes the export file of `record` to `path` through a temporary file,
    // readable by its owner only, and returns once the file and its folder
    // are on the disk. In a fleet the file is made durable together with the
    // other recorders' (GroupCommit), so that no session waits for the disk
    // alone.
    bool writeExport(const QString &path, const QByteArray &record, QString *error);

    // From now on a write acknowledgement whose code is not 1 ends the
    // session before the worker counts it, so that nothing more is sent and
    // no commit follows a refused block.
    void stopAtRefusal();
    // Which acknowledgement since stopAtRefusal() refused (1 for the first);
    // 0 while none did.
    int refusedAcknowledgement() const { return m_refusedAck; }
    // Whether the recorder or the network closed the connection; the
    // transport tells the moment it happens.
    bool connectionLost() const { return m_connectionLost; }

    void showMessage(const QString &text) override;

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Outcome { Failed, TimedOut };

    int failure(Outcome outcome);
    void recheck();
    int noWholeRecord();
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
    bool m_connectionLost = false;
    std::function<void()> m_recheck; // the running await's
};

} // namespace cli
