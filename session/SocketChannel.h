#pragma once

#include "session/KRemoteSocket.h"

#include <QThread>

#include <atomic>

namespace session {

class SocketIo;

// What a KRSMGAPI_HANDLE points to: one connection and the I/O thread that
// serves it, alive from Create to Destroy. Its methods block the caller
// where the interface promises a finished outcome (connect, disconnect) and
// hand everything else to the I/O thread.
class SocketChannel
{
public:
    explicit SocketChannel(QObject *notify);
    // Disconnects, then ends the I/O thread, which frees its socket on the way.
    ~SocketChannel();

    SocketChannel(const SocketChannel &) = delete;
    SocketChannel &operator=(const SocketChannel &) = delete;

    bool connectTo(const REMOTESOCKET_CONNECT_INFO &info);
    bool sendOpen();
    bool send(qint32 command, const PACKET_PARAM &param, QByteArrayView payload);
    void disconnect();

private:
    QThread m_thread;
    SocketIo *m_io;
    std::atomic_bool m_connectTried = false;
    std::atomic<quint32> m_flags = REMOTESOCKET_CONNECT_INFO::DefaultFlags;
};

} // namespace session
