#pragma once

#include "session/CWork.h"
#include "session/ConnectionRecord.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"

#include <QObject>

#include <functional>
#include <memory>

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
    // code with its message already printed.
    int open();

    CWork &worker() { return *m_worker; }
    const ConnectionRecord &record() const { return m_record; }

    // Runs the event loop until `done` holds. Returns Success, or NoSession
    // when the session ends or the time runs out first (`what` names the
    // awaited answer in the message).
    int waitUntil(const std::function<bool()> &done, const QString &what);

    void showMessage(const QString &text) override;

protected:
    bool event(QEvent *event) override;

private:
    enum class Outcome { Waiting, Ready, Failed, TimedOut };

    int failure(Outcome outcome);
    QString where() const;

    const CommandContext &m_context;
    ConnectionRecord m_record;
    std::unique_ptr<CWork> m_worker;
    ProgramExit::Hook m_previousExit;
    bool m_sessionEnded = false;
    qint64 m_deadline = 0;
};

} // namespace cli
