#include "cli/CliSession.h"

#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "i18n/CodePage.h"
#include "session/ConnectingWait.h"
#include "session/SessionMessage.h"
#include "session/SessionNotice.h"

#include <QDateTime>
#include <QEventLoop>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

constexpr int RoundsPerSecond = 10;
constexpr int PollMs = 2;

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
    const auto password = options.password(&error);
    if (!password)
        return m_context.fail(UsageError, error);

    const nelib::CodePage &codePage = nelib::CodePage::system();
    m_record.address = options.host.toLatin1().left(ConnectionRecord::AddressSize - 1);
    m_record.port = options.port;
    m_record.memberId = codePage.encode(options.user, ConnectionRecord::MemberIdSize - 1);
    m_record.password = codePage.encode(*password, ConnectionRecord::PasswordSize - 1);
    m_deadline = QDateTime::currentMSecsSinceEpoch() + qint64(options.timeoutSeconds) * 1000;

    m_worker = std::make_unique<CWork>();
    m_worker->setMainWindow(this);
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
    loop.exec();
    return outcome == Outcome::Ready ? int(Success) : failure(outcome);
}

int CliSession::failure(Outcome outcome)
{
    if (isLoginRefusal(m_worker->lastLoginCode()))
        return Refused; // the recorder's own message is already printed
    if (m_worker->connectFailed())
        return m_context.fail(NoSession, u"cannot connect to %1"_s.arg(where()));
    if (outcome == Outcome::TimedOut)
        return m_context.fail(NoSession, u"no setup record from %1 within %2 s"_s.arg(where()).arg(
                                             m_context.options().timeoutSeconds));
    return m_context.fail(NoSession, u"the session with %1 ended"_s.arg(where()));
}

int CliSession::waitUntil(const std::function<bool()> &done, const QString &what)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done() || m_sessionEnded || QDateTime::currentMSecsSinceEpoch() >= m_deadline)
            loop.quit();
    });
    if (!done()) {
        poll.start(PollMs);
        loop.exec();
    }
    if (done())
        return Success;
    if (m_sessionEnded)
        return m_context.fail(NoSession,
                              u"the session with %1 ended before %2"_s.arg(where(), what));
    return m_context.fail(
        NoSession,
        u"no %1 from %2 within %3 s"_s.arg(what, where()).arg(m_context.options().timeoutSeconds));
}

} // namespace cli
