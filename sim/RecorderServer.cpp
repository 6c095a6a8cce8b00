// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/RecorderServer.h"

#include "session/PacketString.h"
#include "sim/RecorderSession.h"
#include "sim/UserAccounts.h"

#include <QTcpSocket>

#include <algorithm>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcRecorder, "recorder.sim")

namespace sim {

namespace {

// Login answer codes, as the client reads them.
enum LoginCode : quint32 {
    LoginRefused = 0,
    LoginAccepted = 1,
    WrongPassword = 2,
    TooManyUsers = 4,
    NoAuthority = 5,
};

// Enough for a fleet of clients connecting at the same instant; the system
// caps it at its own limit.
constexpr int ListenBacklog = 1024;

} // namespace

RecorderServer::RecorderServer(const SimOptions &options, const QString &recordFile,
                               QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_recordFile(recordFile)
{
    m_uptime.start();
    m_saveTimer.setSingleShot(true);
    m_saveTimer.setInterval(0);
    connect(&m_saveTimer, &QTimer::timeout, this, &RecorderServer::saveChanges);
    connect(&m_server, &QTcpServer::newConnection, this, &RecorderServer::acceptConnections);
}

RecorderServer::~RecorderServer()
{
    // The sessions refer to the store and the clock, so they go first.
    for (RecorderSession *session : std::as_const(m_sessions)) {
        session->disconnect(this);
        delete session;
    }
}

bool RecorderServer::start(const QHostAddress &address, quint16 port, QString *error)
{
    const RecorderStore::NewRecord fresh {m_options.modelId, m_options.softwareVersion,
                                          m_options.adminPassword};
    if (!m_store.open(m_recordFile, fresh, error))
        return false;
    m_server.setListenBacklogSize(ListenBacklog);
    if (!m_server.listen(address, port)) {
        *error = u"cannot listen on %1:%2: %3"_s.arg(address.toString(), QString::number(port),
                                                     m_server.errorString());
        return false;
    }
    qCInfo(lcRecorder).noquote() << name() << "record" << m_recordFile
                                 << (m_store.created() ? "created from the factory defaults"
                                                       : "loaded")
                                 << "|" << m_options.channels << "channels,"
                                 << (m_options.videoStandard ? "PAL" : "NTSC");
    return true;
}

QString RecorderServer::name() const
{
    const QHostAddress host = address();
    const QString text = host.protocol() == QAbstractSocket::IPv6Protocol
                             ? u'[' + host.toString() + u']'
                             : host.toString();
    return text + u':' + QString::number(port());
}

quint32 RecorderServer::loginCode(const PACKET_STRING &login, const RecorderSession *asking)
{
    if (m_options.refuseLoginCode)
        return *m_options.refuseLoginCode;
    switch (UserAccounts::check(m_store.record(), login.memberId, login.password)) {
    case UserAccounts::Check::UnknownAccount:
        m_throttle.failed(asking->peerAddress(), m_uptime.elapsed());
        return LoginRefused;
    case UserAccounts::Check::WrongPassword:
        m_throttle.failed(asking->peerAddress(), m_uptime.elapsed());
        return WrongPassword;
    case UserAccounts::Check::NoNetworkAccess:
        return NoAuthority;
    case UserAccounts::Check::Accepted:
        break;
    }
    const auto others = std::count_if(m_sessions.cbegin(), m_sessions.cend(),
                                      [asking](const RecorderSession *session) {
                                          return session != asking && session->isLoggedIn();
                                      });
    return others >= m_options.maxUsers ? TooManyUsers : LoginAccepted;
}

qint64 RecorderServer::loginWaitMs(const QHostAddress &address) const
{
    return m_options.slowFailedLogins ? m_throttle.waitMs(address, m_uptime.elapsed()) : 0;
}

void RecorderServer::requestSave(RecorderSession *session)
{
    if (!m_awaitingSave.contains(session))
        m_awaitingSave.append(session);
    if (!m_saveTimer.isActive())
        m_saveTimer.start();
}

void RecorderServer::acceptConnections()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        // At the cap the oldest connection still without a login makes way,
        // so a flood of idle connections cannot lock the users out.
        if (m_sessions.size() >= m_options.maxConnections) {
            const auto idle
                = std::find_if(m_sessions.cbegin(), m_sessions.cend(),
                               [](const RecorderSession *s) { return !s->isLoggedIn(); });
            if (idle == m_sessions.cend()) {
                qCInfo(lcRecorder).noquote()
                    << name() << "connection from" << socket->peerAddress().toString()
                    << "refused: --max-connections" << m_options.maxConnections << "reached";
                socket->abort();
                socket->deleteLater();
                continue;
            }
            (*idle)->drop(u"making way for a new connection at --max-connections"_s);
        }
        auto *session = new RecorderSession(socket, this, m_nextSessionId++);
        m_sessions.append(session);
        connect(session, &RecorderSession::ended, this, [this, session] {
            m_sessions.removeOne(session);
            session->deleteLater();
            Q_EMIT sessionEnded();
        });
    }
}

void RecorderServer::saveChanges()
{
    QString error;
    const bool saved = m_store.save(&error);
    if (!saved)
        qCWarning(lcRecorder).noquote() << name() << error << "| the changes are undone";
    const QList<QPointer<RecorderSession>> waiting = std::exchange(m_awaitingSave, {});
    for (const QPointer<RecorderSession> &session : waiting) {
        if (session)
            session->changesSaved(saved);
    }
}

} // namespace sim
