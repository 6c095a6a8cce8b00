// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTcpServer>
#include <QTimer>

#include <functional>

namespace sim {

// A recorder's listening socket. Each accepted connection goes on as a bare
// descriptor, so that a session on another thread can take it.
//
// Connections never use up the process's descriptors: one accepted when
// fewer than a reserve are left is closed at once, so that saving a record
// or receiving firmware always finds a descriptor and a client is refused
// rather than left hanging. Should the descriptors run out all the same, a
// connection cannot even be accepted (and Qt stops listening altogether): a
// spare descriptor, kept open for that moment, is given up to accept each
// waiting connection and close it. Without the spare, listening pauses
// briefly until a descriptor is free again.
class ConnectionListener : public QTcpServer
{
    Q_OBJECT
public:
    ConnectionListener(std::function<void(qintptr)> accepted,
                       std::function<void(const QString &)> log, QObject *parent = nullptr);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void outOfDescriptors();

    std::function<void(qintptr)> m_accepted;
    std::function<void(const QString &)> m_log;
    QTimer m_retry;
};

} // namespace sim
