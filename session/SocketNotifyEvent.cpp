#include "session/SocketNotifyEvent.h"

namespace session {

SocketNotifyEvent::SocketNotifyEvent(const REMOTESOCKET_NOTIFY &record, const QByteArray &packet)
    : QEvent(NotifyType)
    , m_record(record)
    , m_packet(packet)
{ }

} // namespace session
