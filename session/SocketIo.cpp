// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SocketIo.h"

#include "session/Frame.h"
#include "session/RemoteCommand.h"
#include "session/SocketNotifyEvent.h"
#include "setup/LittleEndian.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QTcpSocket>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using nelib::LittleEndian;

namespace session {

SocketIo::SocketIo(KRSMGAPI_HANDLE handle, quint64 channel, QObject *notify)
    : m_handle(handle)
    , m_channel(channel)
    , m_notify(notify)
{ }

quint32 SocketIo::framesQueued()
{
    QMutexLocker lock(&m_mutex);
    return m_nextSequence;
}

std::optional<std::chrono::steady_clock::time_point> SocketIo::writtenAt(quint32 frames)
{
    QMutexLocker lock(&m_mutex);
    if (m_framesWritten < frames)
        return std::nullopt;
    for (const auto &[written, at] : m_writes) {
        if (written >= frames)
            return at;
    }
    return std::nullopt;
}

bool SocketIo::send(qint32 command, const PACKET_PARAM &param, QByteArrayView payload)
{
    // Encoded outside the lock (a firmware chunk is a megabyte); only the
    // sequence number is stamped under it, so numbers follow queue order.
    return queue(Frame::encode(0, command, param, payload), false);
}

bool SocketIo::sendNow(QByteArray frame)
{
    return queue(std::move(frame), true);
}

bool SocketIo::queue(QByteArray frame, bool writeHere)
{
    if (frame.isEmpty())
        return false;
    {
        QMutexLocker lock(&m_mutex);
        if (!m_accepting)
            return false;
        LittleEndian::setU32(frame, Frame::SequenceOffset, m_nextSequence++);
        // Written here only behind every earlier frame. The lock keeps the
        // descriptor open and other writers out; what the network does not
        // take, or a fault, is left to the I/O thread's write.
        if (writeHere && m_fd >= 0 && m_queued.empty() && m_framesInSocket == 0) {
            qsizetype written = 0;
            while (written < frame.size()) {
                const ssize_t n
                    = ::send(m_fd, frame.constData() + written, std::size_t(frame.size() - written),
                             MSG_NOSIGNAL | MSG_DONTWAIT);
                if (n > 0)
                    written += n;
                else if (n == 0 || errno != EINTR)
                    break;
            }
            if (written == frame.size()) {
                noteWritten(1);
                return true;
            }
            frame.remove(0, written);
        }
        m_queued.push_back(std::move(frame));
    }
    QMetaObject::invokeMethod(this, &SocketIo::writeQueued, Qt::QueuedConnection);
    return true;
}

void SocketIo::open(const QString &host, quint16 port)
{
    if (m_shutDown)
        return;
    m_socket = new QTcpSocket(this);
    connect(m_socket, &QTcpSocket::connected, this, &SocketIo::onConnected);
    connect(m_socket, &QTcpSocket::errorOccurred, this, &SocketIo::onSocketError);
    connect(m_socket, &QTcpSocket::disconnected, this, &SocketIo::lose);
    connect(m_socket, &QTcpSocket::readyRead, this, &SocketIo::receive);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &SocketIo::noteSocketWritten);
    m_connecting = true;
    m_socket->connectToHost(host, port);
}

void SocketIo::onConnected()
{
    m_connecting = false;
    // Small request/answer frames must not wait for Nagle's algorithm.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_connected = true;
    {
        QMutexLocker lock(&m_mutex);
        // Without it (no descriptor left), every frame goes by the I/O thread.
        m_fd = ::fcntl(int(m_socket->socketDescriptor()), F_DUPFD_CLOEXEC, 0);
        m_accepting = true;
    }
    post(REMOTESOCKET_NOTIFY::Connected);
}

void SocketIo::onSocketError()
{
    if (m_connecting) {
        m_connecting = false;
        m_socket->abort();
        post(REMOTESOCKET_NOTIFY::ConnectFailed);
    } else {
        lose();
    }
}

void SocketIo::receive()
{
    if (!m_connected)
        return;
    const bool wellFormed = m_reader.feed(m_socket->readAll());
    while (m_connected && m_reader.hasFrame())
        deliver(m_reader.takeFrame());
    if (!wellFormed)
        lose();
}

void SocketIo::deliverDirectly(qint32 command, std::function<void(const QByteArray &)> receiver)
{
    m_directCommand = command;
    m_direct = std::move(receiver);
}

void SocketIo::deliver(const QByteArray &packet)
{
    const qint32 command = LittleEndian::i32(packet, Frame::CommandOffset);
    if (m_direct && command == m_directCommand) {
        m_direct(packet);
    } else if (command != RemoteCommand::OpenAck) {
        post(REMOTESOCKET_NOTIFY::PacketReceived, packet);
    } else if (LittleEndian::u32(packet, Frame::ParamOffset) == 1) {
        post(REMOTESOCKET_NOTIFY::InitAcknowledged);
    } else {
        // The recorder turned the opening exchange down; nothing useful can
        // follow on this connection.
        lose();
    }
}

void SocketIo::post(quint32 kind, const QByteArray &packet)
{
    if (!m_shutDown)
        QCoreApplication::postEvent(m_notify,
                                    new SocketNotifyEvent({m_handle, kind}, packet, m_channel));
}

void SocketIo::writeQueued()
{
    std::deque<QByteArray> frames;
    {
        QMutexLocker lock(&m_mutex);
        frames.swap(m_queued);
        if (m_connected)
            m_framesInSocket += quint32(frames.size());
    }
    if (!m_connected)
        return;
    for (const QByteArray &frame : frames) {
        if (m_socket->write(frame) != frame.size()) {
            lose();
            return;
        }
    }
    if (frames.empty())
        return;
    // Handed to the network now rather than at the next turn of the loop,
    // so that the frames count as written from now.
    m_socket->flush();
    noteSocketWritten();
}

void SocketIo::noteSocketWritten()
{
    if (m_socket->bytesToWrite() > 0)
        return;
    QMutexLocker lock(&m_mutex);
    noteWritten(std::exchange(m_framesInSocket, 0));
}

void SocketIo::noteWritten(quint32 frames)
{
    if (frames == 0)
        return;
    m_framesWritten += frames;
    m_writes.emplace_back(m_framesWritten, std::chrono::steady_clock::now());
    if (m_writes.size() > KeptWrites)
        m_writes.pop_front();
}

void SocketIo::stopAccepting()
{
    m_accepting = false;
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

void SocketIo::shutDown()
{
    {
        QMutexLocker lock(&m_mutex);
        stopAccepting();
    }
    m_shutDown = true;
    if (m_connecting) {
        m_connecting = false;
        m_socket->abort();
    }
    if (!m_connected)
        return;
    writeQueued();
    if (!m_connected)
        return;
    m_connected = false;
    m_socket->disconnectFromHost();
}

void SocketIo::lose()
{
    {
        QMutexLocker lock(&m_mutex);
        stopAccepting();
        m_queued.clear();
    }
    if (!m_connected)
        return;
    m_connected = false;
    m_socket->abort();
    post(REMOTESOCKET_NOTIFY::ConnectionLost);
}

} // namespace session
