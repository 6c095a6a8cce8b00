// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SocketChannel.h"

#include "session/Frame.h"
#include "session/RemoteCommand.h"
#include "session/SocketIo.h"

namespace session {

namespace {
std::atomic<quint64> s_lastSerial {0};
}

SocketChannel::SocketChannel(QObject *notify, IoThread where)
    : m_serial(++s_lastSerial)
    , m_io(new SocketIo(this, m_serial, notify))
{
    if (where == IoThread::Caller)
        return;
    m_thread = new QThread;
    m_thread->setObjectName(QStringLiteral("KRemoteSocket I/O"));
    m_io->moveToThread(m_thread);
    // The socket must die on the thread that uses it; deferred deletions run
    // as the thread finishes, before wait() returns.
    QObject::connect(m_thread, &QThread::finished, m_io, &QObject::deleteLater);
    m_thread->start();
}

SocketChannel::~SocketChannel()
{
    disconnect();
    if (!m_thread) {
        delete m_io;
        return;
    }
    m_thread->quit();
    m_thread->wait();
    delete m_thread;
}

bool SocketChannel::connectTo(const REMOTESOCKET_CONNECT_INFO &info)
{
    if (m_connectTried.exchange(true))
        return false;
    const qsizetype end = info.address.indexOf('\0');
    const QByteArray address = end < 0 ? info.address : info.address.first(end);
    if (address.isEmpty() || address.size() >= REMOTESOCKET_CONNECT_INFO::AddressWidth
        || info.port == 0 || info.port > 65535)
        return false;
    m_flags = info.flags;
    const QString host = QString::fromLatin1(address);
    const quint16 port = quint16(info.port);
    QMetaObject::invokeMethod(m_io, [io = m_io, host, port] { io->open(host, port); });
    return true;
}

bool SocketChannel::sendOpen()
{
    PACKET_PARAM param;
    param.words[0] = Frame::ProtocolVersion;
    param.words[1] = m_flags;
    return send(RemoteCommand::Open, param, {});
}

bool SocketChannel::send(qint32 command, const PACKET_PARAM &param, QByteArrayView payload)
{
    return m_io->send(command, param, payload);
}

bool SocketChannel::sendNow(QByteArray frame)
{
    return m_io->sendNow(std::move(frame));
}

quint32 SocketChannel::framesQueued()
{
    return m_io->framesQueued();
}

std::optional<std::chrono::steady_clock::time_point> SocketChannel::writtenAt(quint32 frames)
{
    return m_io->writtenAt(frames);
}

void SocketChannel::disconnect()
{
    if (!m_thread)
        m_io->shutDown();
    else
        QMetaObject::invokeMethod(m_io, &SocketIo::shutDown, Qt::BlockingQueuedConnection);
}

void SocketChannel::deliverDirectly(qint32 command,
                                    std::function<void(const QByteArray &)> receiver)
{
    m_io->deliverDirectly(command, std::move(receiver));
}

} // namespace session
