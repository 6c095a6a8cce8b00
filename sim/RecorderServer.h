// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "sim/ConnectionListener.h"
#include "sim/LoginThrottle.h"
#include "sim/OffsetClock.h"
#include "sim/RecorderStore.h"
#include "sim/SimOptions.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QMutex>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <atomic>
#include <deque>
#include <memory>
#include <unordered_set>
#include <vector>

struct PACKET_STRING;

Q_DECLARE_LOGGING_CATEGORY(lcRecorder)

namespace sim {

class RecorderSession;
class SessionThreads;

// One simulated recorder: its listening socket, its record and clock, and
// the sessions connected to it. The listener runs on the thread that creates
// the recorder and hands each connection to one of the session threads.
// What the sessions share (the record, the clock, the login slots, the
// failed-login table, the list of connections) is behind one lock, so the
// public functions may be called from any thread.
//
// Changes to the record are saved in batches on the saver's thread: one
// file replacement covers every change made by any session until it starts.
// Each acknowledgement waits for the save that covers its change, so an
// acknowledged change is on disk, no session thread waits for the disk, and
// many sessions writing at once cost few file replacements.
class RecorderServer : public QObject
{
    Q_OBJECT
public:
    // What became of one change of the record.
    struct Change
    {
        enum State { Pending, Saved, Undone };
        std::atomic<int> state {Pending};
        RecorderSession *session; // told once the state is settled
    };
    using ChangeTicket = std::shared_ptr<Change>;
    struct Piece
    {
        qsizetype offset;
        QByteArray bytes;
    };

    // `threads` serve the sessions and must outlive the recorder.
    RecorderServer(const SimOptions &options, const QString &recordFile, SessionThreads *threads,
                   QObject *parent = nullptr);
    // Closes every connection; call it on the thread that created the recorder.
    ~RecorderServer() override;

    // Opens (or creates) the record, then listens; `error` says why not.
    bool start(const QHostAddress &address, quint16 port, QString *error);

    QHostAddress address() const { return m_address; }
    quint16 port() const { return m_port; }
    // "HOST:PORT", as announced and as it prefixes every log line.
    QString name() const { return m_name; }
    const SimOptions &options() const { return m_options; }

    QByteArray record() const;
    quint32 rights(int account) const;
    // Changes the record in memory for `session`, every piece at once, so
    // that no save takes some of them without the others, and asks for a
    // save; the ticket tells once a save covered them, and the session
    // hears changesSettled().
    ChangeTicket write(const std::vector<Piece> &pieces, RecorderSession *session);

    // From a connection to its login; the recorder's own --delay-ms does
    // not count against the client.
    int loginTimeoutMs() const { return m_options.loginTimeoutMs + 2 * m_options.delayMs; }

    QDateTime now() const;
    void setClock(const QDateTime &time);

    // The code of the login answer for `login` asked by `asking` from
    // `peer`; a wrong password or an unknown account slows the next logins
    // from that address.
    quint32 loginCode(const PACKET_STRING &login, const QHostAddress &peer,
                      const RecorderSession *asking);
    // How long a login from `address` has to wait before it is checked.
    qint64 loginWaitMs(const QHostAddress &address) const;
    // `session` is gone: its connection and login slot are free.
    void sessionEnded(const RecorderSession *session);

    int sessionCount() const;

private:
    // A connection, listed from its admission on; its session comes once
    // its thread has taken it.
    struct Entry
    {
        int id;
        RecorderSession *session = nullptr;
        bool loggedIn = false;
        bool leaving = false; // asked to make way
    };

    // A connection that has sent nothing yet, on the listening thread.
    struct Parked
    {
        int id;
        qintptr descriptor;
        QDeadlineTimer loginBy;
    };

    void admit(qintptr descriptor);
    std::deque<Parked>::iterator parkedOf(int id);
    // Closes the connection, or passes it on, and forgets it.
    void unpark(std::deque<Parked>::iterator parked, bool close);
    void closeLateParked();
    void parkedReady();
    void startSession(qintptr descriptor, int id, QDeadlineTimer loginBy);
    // Ends the sessions of the calling thread.
    void closeSessionsHere();
    std::vector<Entry>::iterator entryOf(const RecorderSession *session);
    std::vector<Entry>::iterator entryOf(int id);
    // On the saver's thread: saves every change made so far.
    void save();

    const SimOptions m_options;
    const QString m_recordFile;
    SessionThreads *m_threads;
    ConnectionListener m_listener;
    QHostAddress m_address;
    quint16 m_port = 0;
    QString m_name;
    int m_nextSessionId = 1; // of the listening thread
    // Connections wait on the listening thread until they send their first
    // bytes, so that a crowd of silent ones costs the threads serving
    // sessions nothing: each wake-up of a session thread looks at every
    // socket it serves. They wait in an epoll of their own, which the
    // listening thread watches as one socket. Oldest first; all wait
    // equally long for their login.
    std::deque<Parked> m_parked;
    int m_parking;
    QSocketNotifier m_parkingNotifier;
    QTimer m_parkedTimer; // for the oldest's login

    mutable QMutex m_mutex; // guards everything below
    RecorderStore m_store;
    OffsetClock m_clock;
    LoginThrottle m_throttle;
    QElapsedTimer m_uptime;
    std::vector<Entry> m_sessions; // oldest first
    int m_loggedIn = 0;
    std::vector<ChangeTicket> m_unsaved;
    bool m_savePosted = false; // a save that has not yet taken the changes
    std::unordered_set<RecorderSession *> m_live; // sessions that may be told
};

} // namespace sim
