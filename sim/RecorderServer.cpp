// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/RecorderServer.h"

#include "session/PacketString.h"
#include "sim/RecorderSession.h"
#include "sim/SessionThreads.h"
#include "sim/UserAccounts.h"

#include <QMutexLocker>
#include <QPointer>
#include <QTcpSocket>
#include <QThread>

#include <algorithm>
#include <array>
#include <unordered_map>

#include <sys/epoll.h>
#include <unistd.h>

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
                               SessionThreads *threads, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_recordFile(recordFile)
    , m_threads(threads)
    , m_listener([this](qintptr descriptor) { admit(descriptor); },
                 [this](const QString &text) { qCWarning(lcRecorder).noquote() << m_name << text; })
    , m_parking(::epoll_create1(EPOLL_CLOEXEC))
    , m_parkingNotifier(m_parking, QSocketNotifier::Read)
{
    m_uptime.start();
    m_parkingNotifier.setEnabled(false);
    connect(&m_parkingNotifier, &QSocketNotifier::activated, this, &RecorderServer::parkedReady);
    m_parkedTimer.setSingleShot(true);
    connect(&m_parkedTimer, &QTimer::timeout, this, &RecorderServer::closeLateParked);
}

RecorderServer::~RecorderServer()
{
    m_listener.close();
    while (!m_parked.empty())
        unpark(m_parked.begin(), true);
    m_parkingNotifier.setEnabled(false);
    ::close(m_parking);
    // After the connections on their way have become sessions, each thread
    // deletes its own; none is left to use the record.
    m_threads->onEachThread([this] { closeSessionsHere(); });
    m_threads->saver().finish(this);
}

void RecorderServer::closeSessionsHere()
{
    std::vector<RecorderSession *> here;
    {
        const QMutexLocker lock(&m_mutex);
        // A listed session has not ended, so it has not deleted itself.
        const auto mine
            = std::stable_partition(m_sessions.begin(), m_sessions.end(), [](const Entry &e) {
                  return !e.session || e.session->thread() != QThread::currentThread();
              });
        for (auto it = mine; it != m_sessions.end(); ++it) {
            m_loggedIn -= it->loggedIn;
            m_live.erase(it->session);
            here.push_back(it->session);
        }
        m_sessions.erase(mine, m_sessions.end());
    }
    for (RecorderSession *session : here)
        delete session;
}

bool RecorderServer::start(const QHostAddress &address, quint16 port, QString *error)
{
    const RecorderStore::NewRecord fresh {m_options.modelId, m_options.softwareVersion,
                                          m_options.adminPassword};
    if (!m_store.open(m_recordFile, fresh, error))
        return false;
    m_listener.setListenBacklogSize(ListenBacklog);
    if (!m_listener.listen(address, port)) {
        *error = u"cannot listen on %1:%2: %3"_s.arg(address.toString(), QString::number(port),
                                                     m_listener.errorString());
        return false;
    }
    m_address = m_listener.serverAddress();
    m_port = m_listener.serverPort();
    m_name = (m_address.protocol() == QAbstractSocket::IPv6Protocol
                  ? u'[' + m_address.toString() + u']'
                  : m_address.toString())
             + u':' + QString::number(m_port);
    qCInfo(lcRecorder).noquote() << m_name << "record" << m_recordFile
                                 << (m_store.created() ? "created from the factory defaults"
                                                       : "loaded")
                                 << "|" << m_options.channels << "channels,"
                                 << (m_options.videoStandard ? "PAL" : "NTSC");
    return true;
}

QByteArray RecorderServer::record() const
{
    const QMutexLocker lock(&m_mutex);
    return m_store.record();
}

quint32 RecorderServer::rights(int account) const
{
    const QMutexLocker lock(&m_mutex);
    return UserAccounts::rights(m_store.record(), account);
}

RecorderServer::ChangeTicket RecorderServer::write(const std::vector<Piece> &pieces,
                                                   RecorderSession *session)
{
    auto ticket = std::make_shared<Change>();
    ticket->session = session;
    const QMutexLocker lock(&m_mutex);
    for (const Piece &piece : pieces)
        m_store.write(piece.offset, piece.bytes);
    m_unsaved.push_back(ticket);
    if (!std::exchange(m_savePosted, true))
        m_threads->saver().post(this, [this] { save(); });
    return ticket;
}

void RecorderServer::save()
{
    // The file is written outside the lock, so the sessions keep reading
    // and changing the record meanwhile; the next save takes those changes.
    QByteArray record;
    std::vector<ChangeTicket> covered;
    {
        const QMutexLocker lock(&m_mutex);
        m_savePosted = false;
        if (m_unsaved.empty())
            return;
        record = m_store.record();
        covered = std::exchange(m_unsaved, {});
    }
    QString error;
    const bool saved = m_store.writeFile(record, &error);
    const QMutexLocker lock(&m_mutex);
    if (saved) {
        m_store.markSaved(record);
    } else {
        // Memory never claims what the file does not hold: every change
        // not on disk is undone, also those made while the file was written.
        qCWarning(lcRecorder).noquote() << m_name << error << "| the changes are undone";
        m_store.undo();
        covered.insert(covered.end(), m_unsaved.begin(), m_unsaved.end());
        m_unsaved.clear();
    }
    for (const ChangeTicket &ticket : covered)
        ticket->state.store(saved ? Change::Saved : Change::Undone, std::memory_order_release);
    // Told once every change is settled, and by a queued call, so that no
    // session runs under the lock or finds its later changes pending. One
    // call per thread tells all of its sessions; one gone by then is not told.
    std::unordered_set<RecorderSession *> seen;
    std::unordered_map<QThread *, std::vector<QPointer<RecorderSession>>> told;
    for (const ChangeTicket &ticket : covered) {
        RecorderSession *session = ticket->session;
        // Only a live session is watched: it leaves m_live before it goes.
        if (m_live.contains(session) && seen.insert(session).second)
            told[session->thread()].emplace_back(session);
    }
    for (auto &[thread, sessions] : told) {
        m_threads->post(thread, [sessions = std::move(sessions)] {
            for (const QPointer<RecorderSession> &session : sessions) {
                if (session)
                    session->changesSettled();
            }
        });
    }
}

QDateTime RecorderServer::now() const
{
    const QMutexLocker lock(&m_mutex);
    return m_clock.now();
}

void RecorderServer::setClock(const QDateTime &time)
{
    const QMutexLocker lock(&m_mutex);
    m_clock.set(time);
}

quint32 RecorderServer::loginCode(const PACKET_STRING &login, const QHostAddress &peer,
                                  const RecorderSession *asking)
{
    const QMutexLocker lock(&m_mutex);
    const auto entry = entryOf(asking);
    if (entry == m_sessions.end())
        return LoginRefused;
    quint32 code = LoginAccepted;
    if (m_options.refuseLoginCode) {
        code = *m_options.refuseLoginCode;
    } else {
        switch (UserAccounts::check(m_store.record(), login.memberId, login.password)) {
        case UserAccounts::Check::UnknownAccount:
            m_throttle.failed(peer, m_uptime.elapsed());
            code = LoginRefused;
            break;
        case UserAccounts::Check::WrongPassword:
            m_throttle.failed(peer, m_uptime.elapsed());
            code = WrongPassword;
            break;
        case UserAccounts::Check::NoNetworkAccess:
            code = NoAuthority;
            break;
        case UserAccounts::Check::Accepted:
            if (!entry->loggedIn && m_loggedIn >= m_options.maxUsers)
                code = TooManyUsers;
            break;
        }
    }
    // A session holds a user slot from its accepted login to its end or a
    // login that fails.
    const bool loggedIn = code == LoginAccepted;
    m_loggedIn += int(loggedIn) - int(entry->loggedIn);
    entry->loggedIn = loggedIn;
    return code;
}

qint64 RecorderServer::loginWaitMs(const QHostAddress &address) const
{
    if (!m_options.slowFailedLogins)
        return 0;
    const QMutexLocker lock(&m_mutex);
    return m_throttle.waitMs(address, m_uptime.elapsed());
}

void RecorderServer::sessionEnded(const RecorderSession *session)
{
    const QMutexLocker lock(&m_mutex);
    const auto entry = entryOf(session);
    if (entry == m_sessions.end())
        return;
    m_loggedIn -= entry->loggedIn;
    m_live.erase(entry->session);
    m_sessions.erase(entry);
}

int RecorderServer::sessionCount() const
{
    const QMutexLocker lock(&m_mutex);
    return int(m_sessions.size());
}

std::vector<RecorderServer::Entry>::iterator RecorderServer::entryOf(const RecorderSession *session)
{
    return std::find_if(m_sessions.begin(), m_sessions.end(),
                        [session](const Entry &e) { return e.session == session; });
}

std::vector<RecorderServer::Entry>::iterator RecorderServer::entryOf(int id)
{
    return std::find_if(m_sessions.begin(), m_sessions.end(),
                        [id](const Entry &e) { return e.id == id; });
}

void RecorderServer::admit(qintptr descriptor)
{
    const int id = m_nextSessionId++;
    {
        const QMutexLocker lock(&m_mutex);
        const auto leaving = std::count_if(m_sessions.cbegin(), m_sessions.cend(),
                                           [](const Entry &e) { return e.leaving; });
        // At the cap the oldest connection still without a login makes way,
        // so a flood of idle connections cannot lock the users out.
        if (qsizetype(m_sessions.size()) - leaving >= m_options.maxConnections) {
            const auto idle
                = std::find_if(m_sessions.begin(), m_sessions.end(),
                               [](const Entry &e) { return !e.loggedIn && !e.leaving; });
            if (idle == m_sessions.end()) {
                QTcpSocket socket;
                socket.setSocketDescriptor(descriptor);
                qCInfo(lcRecorder).noquote()
                    << m_name << "connection from" << socket.peerAddress().toString()
                    << "refused: --max-connections" << m_options.maxConnections << "reached";
                socket.abort();
                return;
            }
            idle->leaving = true;
            // Posted while the session is listed: it is still there to
            // take it, as it leaves the list only before it goes. One still
            // on its way is closed as it arrives, one waiting here at once.
            if (RecorderSession *session = idle->session) {
                QMetaObject::invokeMethod(session, [session] {
                    session->drop(u"making way for a new connection at --max-connections"_s);
                });
            } else if (const auto parked = parkedOf(idle->id); parked != m_parked.end()) {
                qCInfo(lcRecorder).noquote() << m_name << "connection" << idle->id
                                             << "closed: making way for a new connection at "
                                                "--max-connections";
                m_sessions.erase(idle);
                unpark(parked, true);
            }
        }
        m_sessions.push_back({id});
    }
    epoll_event event {};
    event.events = EPOLLIN;
    event.data.u32 = quint32(id);
    ::epoll_ctl(m_parking, EPOLL_CTL_ADD, int(descriptor), &event);
    m_parked.push_back({id, descriptor, QDeadlineTimer(loginTimeoutMs())});
    m_parkingNotifier.setEnabled(true);
    if (!m_parkedTimer.isActive())
        m_parkedTimer.start(loginTimeoutMs());
}

std::deque<RecorderServer::Parked>::iterator RecorderServer::parkedOf(int id)
{
    return std::find_if(m_parked.begin(), m_parked.end(),
                        [id](const Parked &p) { return p.id == id; });
}

void RecorderServer::unpark(std::deque<Parked>::iterator parked, bool close)
{
    const Parked taken = *parked;
    m_parked.erase(parked);
    ::epoll_ctl(m_parking, EPOLL_CTL_DEL, int(taken.descriptor), nullptr);
    // Watched only while in use: of a thousand recorders, most have none.
    m_parkingNotifier.setEnabled(!m_parked.empty());
    if (close) {
        ::close(int(taken.descriptor));
        return;
    }
    QMetaObject::invokeMethod(m_threads->next(), [this, taken] {
        startSession(taken.descriptor, taken.id, taken.loginBy);
    });
}

void RecorderServer::parkedReady()
{
    // Bytes or the end of the connection: a session takes it from here.
    std::array<epoll_event, 64> events;
    const int ready = ::epoll_wait(m_parking, events.data(), int(events.size()), 0);
    for (int i = 0; i < ready; ++i) {
        if (const auto parked = parkedOf(int(events[std::size_t(i)].data.u32));
            parked != m_parked.end())
            unpark(parked, false);
    }
}

void RecorderServer::closeLateParked()
{
    // A connection whose login came in time goes on to its session, even
    // when its deadline is read before its bytes are.
    parkedReady();
    while (!m_parked.empty() && m_parked.front().loginBy.hasExpired()) {
        const int id = m_parked.front().id;
        qCInfo(lcRecorder).noquote() << m_name << "connection" << id << "closed: no login within"
                                     << loginTimeoutMs() << "ms";
        unpark(m_parked.begin(), true);
        const QMutexLocker lock(&m_mutex);
        if (const auto entry = entryOf(id); entry != m_sessions.end())
            m_sessions.erase(entry);
    }
    if (!m_parked.empty())
        m_parkedTimer.start(int(std::max<qint64>(m_parked.front().loginBy.remainingTime(), 0)));
}

void RecorderServer::startSession(qintptr descriptor, int id, QDeadlineTimer loginBy)
{
    auto *socket = new QTcpSocket;
    const bool attached = socket->setSocketDescriptor(descriptor);
    const QMutexLocker lock(&m_mutex);
    const auto entry = entryOf(id);
    if (attached && !entry->leaving) {
        entry->session = new RecorderSession(socket, this, id, loginBy);
        m_live.insert(entry->session);
        return;
    }
    if (attached) {
        qCInfo(lcRecorder).noquote() << m_name << "connection" << id
                                     << "closed: making way for a new connection at "
                                        "--max-connections";
    } else {
        qCWarning(lcRecorder).noquote()
            << m_name << "cannot take a connection:" << socket->errorString();
        ::close(int(descriptor));
    }
    m_sessions.erase(entry);
    delete socket;
}

} // namespace sim
