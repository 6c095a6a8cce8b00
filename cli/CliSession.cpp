// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/CliSession.h"

#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/Fiber.h"
#include "cli/GroupCommit.h"
#include "cli/LoginFields.h"
#include "session/Frame.h"
#include "session/RemoteCommand.h"
#include "session/SessionMessage.h"
#include "session/SessionNotice.h"
#include "session/SocketNotifyEvent.h"
#include "setup/ExportFile.h"
#include "setup/SetupRecordMap.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QTimer>

using namespace Qt::StringLiterals;
using setup::SetupRecordMap;

namespace cli {

namespace {

bool isLoginRefusal(std::optional<int> code)
{
    return code && *code != CWork::LoginOk && *code >= 0 && *code <= 7;
}

} // namespace

CliSession::CliSession(const CommandContext &context)
    : m_context(context)
{
    MessageSink::install(this);
    m_previousExit = ProgramExit::install([this](int) { m_sessionEnded = true; });
}

CliSession::~CliSession()
{
    if (m_worker) {
        m_worker->setMainWindow(nullptr);
        m_worker->disconnectSession();
        m_worker.reset();
    }
    ProgramExit::install(m_previousExit);
    MessageSink::install(nullptr);
}

QString CliSession::where() const
{
    return u"%1:%2"_s.arg(m_context.options().host).arg(m_context.options().port);
}

void CliSession::showMessage(const QString &text)
{
    m_context.err() << text << '\n';
    m_context.err().flush();
}

bool CliSession::event(QEvent *event)
{
    if (event->type() == QEvent::Type(SessionMessage::Notice)) {
        showMessage(SessionNotice::fromMessage(*static_cast<SessionMessage *>(event)).text());
        recheck();
        return true;
    }
    if (event->type() != QEvent::Type(SessionMessage::SessionEnded))
        return QObject::event(event);
    m_sessionEnded = true;
    recheck();
    return true;
}

void CliSession::wake()
{
    recheck();
}

bool CliSession::writeExport(const QString &path, const QByteArray &record, QString *error)
{
    const QByteArray bytes = setup::ExportFile::build(record);
    if (bytes.isEmpty()) {
        *error = u"no whole record"_s;
        return false;
    }
    if (!Fiber::current())
        return GroupCommit::writeAlone(path, bytes, error);
    return GroupCommit::instance().write(path, bytes, error);
}

void CliSession::recheck()
{
    if (m_recheck)
        m_recheck();
}

bool CliSession::await(const std::function<bool()> &done, std::chrono::milliseconds timeout)
{
    if (done())
        return true;
    bool timedOut = false;
    Fiber *fiber = Fiber::current();
    QEventLoop loop;
    const auto over = [&] {
        return timedOut || done();
    };
    m_recheck = [&] {
        if (fiber)
            fiber->wake();
        else if (over())
            loop.quit();
    };
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, this, [&] {
        timedOut = true;
        recheck();
    });
    timer.start(std::max(timeout, std::chrono::milliseconds(0)));
    if (fiber) {
        while (!over())
            Fiber::yield();
    } else {
        loop.exec();
    }
    m_recheck = nullptr;
    return done();
}

int CliSession::open()
{
    const GlobalOptions &options = m_context.options();
    QString error;
    const auto fields = LoginFields::from(options, &error);
    if (!fields)
        return m_context.fail(UsageError, error);
    m_record.address = fields->address;
    m_record.port = options.port;
    m_record.memberId = fields->memberId;
    m_record.password = fields->password;
    m_deadline = QDateTime::currentMSecsSinceEpoch() + qint64(options.timeoutSeconds) * 1000;

    m_worker = std::make_unique<CWork>();
    m_worker->setMainWindow(this);
    m_worker->installEventFilter(this);
    m_worker->setIoThread(session::IoThread::Caller);
    connect(m_worker.get(), &CWork::notified, this, &CliSession::recheck);
    if (!m_worker->connectSession(&m_record))
        return m_context.fail(NoSession, u"cannot connect to %1"_s.arg(where()));

    // The connecting wait's decisions as the session reaches them: a failed
    // or idle worker, else the setup record; running out of time otherwise.
    const auto failed = [this] {
        return m_worker->state() == CWork::Failed || m_worker->state() == CWork::Idle;
    };
    const bool decided = await([&] { return failed() || m_worker->setupReceived() == 1; },
                               std::chrono::seconds(options.timeoutSeconds));
    // The worker posts its notice ("Login failed") in the step that decides:
    // print it before the command's own message.
    QCoreApplication::sendPostedEvents(this);
    if (!decided)
        return failure(Outcome::TimedOut);
    if (failed())
        return failure(Outcome::Failed);
    return m_setupAnswerSize == SetupRecordMap::RecordSize ? int(Success) : noWholeRecord();
}

int CliSession::noWholeRecord()
{
    return m_context.fail(
        NoSession,
        u"%1 answered with %2 bytes of setup instead of a whole record of %3; nothing was read or "
        u"written"_s.arg(where(), QString::number(m_setupAnswerSize.value_or(0)),
                         QString::number(SetupRecordMap::RecordSize)));
}

int CliSession::failure(Outcome outcome)
{
    if (isLoginRefusal(m_worker->lastLoginCode()))
        return Refused; // the recorder's own message is already printed
    if (m_setupAnswerSize && *m_setupAnswerSize != SetupRecordMap::RecordSize)
        return noWholeRecord();
    if (m_worker->connectFailed())
        return m_context.fail(NoSession, u"cannot connect to %1"_s.arg(where()));
    if (outcome == Outcome::TimedOut)
        return m_context.fail(NoSession, u"no setup record from %1 within %2 s"_s.arg(where()).arg(
                                             m_context.options().timeoutSeconds));
    if (m_connectionLost)
        return m_context.fail(NoSession, u"%1 closed the connection"_s.arg(where()));
    return m_context.fail(NoSession, u"the session with %1 ended"_s.arg(where()));
}

void CliSession::stopAtRefusal()
{
    m_watchingWrites = true;
    m_acksSeen = 0;
    m_refusedAck = 0;
}

bool CliSession::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_worker.get() || event->type() != session::SocketNotifyEvent::NotifyType)
        return false;
    // After a refusal the session is over: nothing still queued for it counts.
    if (m_refusedAck)
        return true;
    const auto *notify = static_cast<session::SocketNotifyEvent *>(event);
    if (notify->record().kind == REMOTESOCKET_NOTIFY::ConnectionLost)
        m_connectionLost = true;
    if (notify->record().kind != REMOTESOCKET_NOTIFY::PacketReceived)
        return false;
    const std::optional<session::Frame> frame = session::Frame::decode(notify->packet());
    if (!frame)
        return false;
    if (frame->command == RemoteCommand::SetupAnswer && frame->param.words[2] == 0)
        m_setupAnswerSize = frame->payload.size();
    // One that acknowledges no write the worker ignores.
    if (frame->command != RemoteCommand::SetupWriteAck || !m_watchingWrites
        || m_worker->writesAwaited() == 0)
        return false;
    ++m_acksSeen;
    if (frame->param.words[0] == 1)
        return false;
    m_refusedAck = m_acksSeen;
    m_worker->disconnectSession();
    recheck();
    return true;
}

int CliSession::waitUntil(const std::function<bool()> &done, const QString &what)
{
    await([&] { return done() || m_sessionEnded; },
          std::chrono::milliseconds(m_deadline - QDateTime::currentMSecsSinceEpoch()));
    // The worker posts its notice ("Import Success") in the same step that
    // ends the wait: print it before the command reports its outcome.
    QCoreApplication::sendPostedEvents(this);
    if (done())
        return Success;
    if (m_connectionLost)
        return m_context.fail(NoSession,
                              u"%1 closed the connection before %2"_s.arg(where(), what));
    if (m_sessionEnded)
        return m_context.fail(NoSession,
                              u"the session with %1 ended before %2"_s.arg(where(), what));
    return m_context.fail(
        NoSession,
        u"no %1 from %2 within %3 s"_s.arg(what, where()).arg(m_context.options().timeoutSeconds));
}

} // namespace cli
