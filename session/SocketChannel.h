// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/KRemoteSocket.h"

#include <QThread>

#include <atomic>

namespace session {

class SocketIo;

// What a KRSMGAPI_HANDLE points to: one connection and the I/O thread that
// serves it, alive from Create to Destroy. Disconnect waits for the I/O
// thread to close the socket (which never waits on the network); everything
// else is handed to the I/O thread.
class SocketChannel
{
public:
    explicit SocketChannel(QObject *notify);
    // Disconnects, then ends the I/O thread, which frees its socket on the way.
    ~SocketChannel();

    SocketChannel(const SocketChannel &) = delete;
    SocketChannel &operator=(const SocketChannel &) = delete;

    // A number no other handle of the process has had.
    quint64 serial() const { return m_serial; }

    // Starts the attempt; false for an invalid address or port or a second call.
    bool connectTo(const REMOTESOCKET_CONNECT_INFO &info);
    bool sendOpen();
    bool send(qint32 command, const PACKET_PARAM &param, QByteArrayView payload);
    void disconnect();

private:
    const quint64 m_serial;
    QThread m_thread;
    SocketIo *m_io;
    std::atomic_bool m_connectTried = false;
    std::atomic<quint32> m_flags = REMOTESOCKET_CONNECT_INFO::DefaultFlags;
};

} // namespace session
