// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/RemoteSocketNotify.h"

#include <QByteArray>
#include <QEvent>

namespace session {

// Posted by the transport's I/O thread to a handle's notify object. It owns
// its copies, so the receiver may keep them beyond event():
//
//   if (e->type() == SocketNotifyEvent::NotifyType) {
//       auto *n = static_cast<SocketNotifyEvent *>(e);
//       if (n->record().handle == m_handle && n->record().kind == ...)
//           ... n->packet() ...
//   }
//
// The packet is the whole received frame (head and payload, the layout of
// Frame) for kind PacketReceived and empty for the other kinds.
class SocketNotifyEvent : public QEvent
{
public:
    // 0x8000 is WM_APP, the window message recorder socket libraries notify
    // with on Windows; the number also lies in Qt's user event range.
    static constexpr QEvent::Type NotifyType = QEvent::Type(0x8000);

    // `channel` is the serial number of the handle that posted the event
    // (SocketChannel::serial()): unlike the handle's address, it is never
    // reused, so an event of a destroyed handle is told from a new one's.
    SocketNotifyEvent(const REMOTESOCKET_NOTIFY &record, const QByteArray &packet,
                      quint64 channel = 0);

    const REMOTESOCKET_NOTIFY &record() const { return m_record; }
    const QByteArray &packet() const { return m_packet; }
    quint64 channel() const { return m_channel; }

private:
    REMOTESOCKET_NOTIFY m_record;
    QByteArray m_packet;
    quint64 m_channel;
};

} // namespace session
