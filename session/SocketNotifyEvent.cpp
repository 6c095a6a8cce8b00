// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SocketNotifyEvent.h"

namespace session {

SocketNotifyEvent::SocketNotifyEvent(const REMOTESOCKET_NOTIFY &record, const QByteArray &packet,
                                     quint64 channel)
    : QEvent(NotifyType)
    , m_record(record)
    , m_packet(packet)
    , m_channel(channel)
{ }

} // namespace session
