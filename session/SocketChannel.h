// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/KRemoteSocket.h"
#include "session/SocketIo.h"

#include <QThread>

#include <atomic>
#include <chrono>
#include <functional>

namespace session {

// What a KRSMGAPI_HANDLE points to: one connection and the thread that
// serves it, alive from Create to Destroy. That is an I/O thread of the
// handle's own, or the thread that created the handle (IoThread::Caller),
// whose event loop then does the socket's work beside its own: the command
// line runs a session, or a whole fleet of them, on one thread that way.
// Disconnect waits for the I/O thread to close the socket (which never waits
// on the network); everything else is handed to the I/O thread.
class SocketChannel
{
public:
    SocketChannel(QObject *notify, IoThread where);
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
    // See SocketIo.
    bool sendNow(QByteArray frame);
    void disconnect();
    // Frames of `command` go to `receiver`, called on the I/O thread, instead
    // of being posted: a thread waiting for them is woken without a detour
    // through the notify object's event loop. Only before connectTo().
    void deliverDirectly(qint32 command, std::function<void(const QByteArray &)> receiver);
    // See SocketIo.
    quint32 framesQueued();
    std::optional<std::chrono::steady_clock::time_point> writtenAt(quint32 frames);

private:
    const quint64 m_serial;
    QThread *m_thread = nullptr; // null when the I/O runs on the creating thread
    SocketIo *m_io;
    std::atomic_bool m_connectTried = false;
    std::atomic<quint32> m_flags = REMOTESOCKET_CONNECT_INFO::DefaultFlags;
};

} // namespace session
