// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/CliSession.h"

#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/LoginFields.h"
#include "session/ConnectingWait.h"
#include "session/Frame.h"
#include "session/RemoteCommand.h"
#include "session/SessionMessage.h"
#include "session/SessionNotice.h"
#include "session/SocketNotifyEvent.h"
#include "setup/SetupRecordMap.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QTimer>

using namespace Qt::StringLiterals;
using setup::SetupRecordMap;

namespace cli {

namespace {

constexpr int RoundsPerSecond = 10;
constexpr int PollMs = 2;
// The transport tells of a lost connection only by refusing the next send,
// so the waits probe with keep-alives, which a recorder never answers.
constexpr int ProbeMs = 100;

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
        return true;
    }
    if (event->type() != QEvent::Type(SessionMessage::SessionEnded))
        return QObject::event(event);
    m_sessionEnded = true;
    return true;
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
    if (!m_worker->connectSession(&m_record))
        return m_context.fail(NoSession, u"cannot connect to %1"_s.arg(where()));

    Outcome outcome = Outcome::Waiting;
    QEventLoop loop;
    auto decide = [&](Outcome o) {
        outcome = o;
        loop.quit();
    };
    ConnectingWait wait(this, m_worker->status(),
                        {nullptr, [&] { decide(Outcome::Ready); }, [&] { decide(Outcome::Failed); },
                         [&] {
                             decide(Outcome::TimedOut);
                         }},
                        options.timeoutSeconds * RoundsPerSecond);
    // Learning of the record by signal keeps the command from sleeping out
    // a whole polling period.
    QObject::connect(m_worker.get(), &CWork::setupArrived, &loop, [&wait] { wait.wake(); });
    QTimer probe;
    QObject::connect(&probe, &QTimer::timeout, &loop, [&] {
        if (connectionLost())
            decide(Outcome::Failed);
    });
    probe.start(ProbeMs);
    loop.exec();
    if (outcome != Outcome::Ready)
        return failure(outcome);
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
    m_handle = notify->record().handle;
    if (notify->record().kind != REMOTESOCKET_NOTIFY::PacketReceived)
        return false;
    const std::optional<session::Frame> frame = session::Frame::decode(notify->packet());
    if (!frame)
        return false;
    if (frame->command == RemoteCommand::SetupAnswer && frame->param.words[2] == 0)
        m_setupAnswerSize = frame->payload.size();
    if (frame->command != RemoteCommand::SetupWriteAck || !m_watchingWrites)
        return false;
    ++m_acksSeen;
    if (frame->param.words[0] == 1)
        return false;
    m_refusedAck = m_acksSeen;
    m_worker->disconnectSession();
    return true;
}

bool CliSession::connectionLost()
{
    if (m_connectionLost)
        return true;
    const int state = m_worker->state();
    if (!m_handle || state < CWork::Connected || state > CWork::Ready)
        return false;
    const PACKET_PARAM probe;
    m_connectionLost = !KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::KeepAlive, &probe);
    return m_connectionLost;
}

int CliSession::waitUntil(const std::function<bool()> &done, const QString &what)
{
    QEventLoop loop;
    QTimer poll;
    qint64 nextProbe = 0;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        if (now >= nextProbe) {
            nextProbe = now + ProbeMs;
            m_sessionEnded = m_sessionEnded || connectionLost();
        }
        if (done() || m_sessionEnded || now >= m_deadline)
            loop.quit();
    });
    if (!done()) {
        poll.start(PollMs);
        loop.exec();
    }
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
