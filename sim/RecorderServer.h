// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "sim/LoginThrottle.h"
#include "sim/OffsetClock.h"
#include "sim/RecorderStore.h"
#include "sim/SimOptions.h"

#include <QElapsedTimer>
#include <QList>
#include <QLoggingCategory>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTimer>

struct PACKET_STRING;

Q_DECLARE_LOGGING_CATEGORY(lcRecorder)

namespace sim {

class RecorderSession;

// One simulated recorder: its listening socket, its record and clock, and
// the sessions connected to it. Everything runs on the thread that owns it.
//
// Changes to the record are saved in batches: a session that changed the
// record asks for a save, and one save at the next turn of the event loop
// serves every session that asked meanwhile. Each session holds its
// acknowledgement back until then, so an acknowledged change is on disk
// while many sessions writing at once cost few file replacements.
class RecorderServer : public QObject
{
    Q_OBJECT
public:
    RecorderServer(const SimOptions &options, const QString &recordFile, QObject *parent = nullptr);
    ~RecorderServer() override;

    // Opens (or creates) the record, then listens; `error` says why not.
    bool start(const QHostAddress &address, quint16 port, QString *error);

    QHostAddress address() const { return m_server.serverAddress(); }
    quint16 port() const { return m_server.serverPort(); }
    // "HOST:PORT", as announced and as it prefixes every log line.
    QString name() const;

    const SimOptions &options() const { return m_options; }
    RecorderStore &store() { return m_store; }
    OffsetClock &clock() { return m_clock; }

    // The code of the login answer for `login` asked by `asking`; a wrong
    // password or an unknown account slows the next logins from its address.
    quint32 loginCode(const PACKET_STRING &login, const RecorderSession *asking);
    // How long a login from `address` has to wait before it is checked.
    qint64 loginWaitMs(const QHostAddress &address) const;

    // `session` has changed the record; it hears changesSaved() once the
    // change is on disk or undone.
    void requestSave(RecorderSession *session);

    int sessionCount() const { return int(m_sessions.size()); }

Q_SIGNALS:
    void sessionEnded();

private:
    void acceptConnections();
    void saveChanges();

    SimOptions m_options;
    QString m_recordFile;
    RecorderStore m_store;
    OffsetClock m_clock;
    QTcpServer m_server;
    QList<RecorderSession *> m_sessions; // oldest first
    LoginThrottle m_throttle;
    QElapsedTimer m_uptime;
    QList<QPointer<RecorderSession>> m_awaitingSave;
    QTimer m_saveTimer;
    int m_nextSessionId = 1;
};

} // namespace sim
