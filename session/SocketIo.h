// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/FrameReader.h"
#include "session/KRemoteSocket.h"

#include <QByteArray>
#include <QMutex>
#include <QObject>
#include <QString>

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <utility>

QT_BEGIN_NAMESPACE
class QTcpSocket;
QT_END_NAMESPACE

namespace session {

// The part of a connection that lives on its I/O thread: the TCP socket, the
// frame reader and the notifications. send() and sendNow() are the entry
// points for other threads; open() and shutDown() run on the I/O thread through queued
// calls from SocketChannel.
class SocketIo : public QObject
{
    Q_OBJECT

public:
    // Writes remembered for writtenAt().
    static constexpr std::size_t KeptWrites = 16;

    SocketIo(KRSMGAPI_HANDLE handle, quint64 channel, QObject *notify);

    // Any thread. Queues one frame, numbered in queueing order; false when
    // the connection is not open or the payload is too large.
    bool send(qint32 command, const PACKET_PARAM &param, QByteArrayView payload);

    // Any thread. The same for a frame from Frame::encode(), whose sequence
    // number is set here; when nothing else is waiting to go out, the
    // calling thread writes it to the network itself, so that it leaves now
    // rather than once the I/O thread has woken up. What the network does
    // not take at once goes on from the I/O thread.
    bool sendNow(QByteArray frame);

    // Any thread. How many frames have been queued so far.
    quint32 framesQueued();
    // Any thread. When the first `frames` frames had been handed to the
    // network (a later time for frames written long ago); nothing while
    // they have not.
    std::optional<std::chrono::steady_clock::time_point> writtenAt(quint32 frames);

    // Starts connecting; the outcome is posted as a Connected or a
    // ConnectFailed event, a later loss as a ConnectionLost event.
    void open(const QString &host, quint16 port);
    // See SocketChannel::deliverDirectly(); before open().
    void deliverDirectly(qint32 command, std::function<void(const QByteArray &)> receiver);
    // Refuses further sends, writes the frames already queued and closes;
    // an attempt still connecting is abandoned. Nothing is posted after it.
    void shutDown();

private:
    bool queue(QByteArray frame, bool writeHere);
    void onConnected();
    void onSocketError();
    void receive();
    void deliver(const QByteArray &packet);
    void post(quint32 kind, const QByteArray &packet = {});
    void writeQueued();
    // Notes the frames the socket object held as written once it holds no
    // more bytes.
    void noteSocketWritten();
    // Under m_mutex: `frames` more frames have been handed to the network.
    void noteWritten(quint32 frames);
    // Under m_mutex: sends are refused from now on.
    void stopAccepting();
    void lose();

    // Shared with sending threads, under m_mutex.
    QMutex m_mutex;
    bool m_accepting = false;
    quint32 m_nextSequence = 0;
    std::deque<QByteArray> m_queued;
    // A duplicate of the socket's descriptor for sendNow(), closed as sends
    // are refused, so that it never names another file; -1 when closed.
    int m_fd = -1;
    // Frames handed to the socket object of which it still holds bytes.
    quint32 m_framesInSocket = 0;
    // The last writes: how many frames had been written by each, and when.
    quint32 m_framesWritten = 0;
    std::deque<std::pair<quint32, std::chrono::steady_clock::time_point>> m_writes;

    // I/O thread only.
    const KRSMGAPI_HANDLE m_handle;
    const quint64 m_channel;
    QObject *const m_notify;
    QTcpSocket *m_socket = nullptr;
    bool m_connecting = false;
    bool m_connected = false;
    bool m_shutDown = false;
    FrameReader m_reader;
    qint32 m_directCommand = 0;
    std::function<void(const QByteArray &)> m_direct;
};

} // namespace session
