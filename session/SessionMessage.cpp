// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SessionMessage.h"

SessionMessage::SessionMessage(Kind kind, qintptr wParam, qintptr lParam, quint64 source)
    : QEvent(QEvent::Type(kind))
    , m_wParam(wParam)
    , m_lParam(lParam)
    , m_source(source)
{ }

bool SessionMessage::isSessionMessage(const QEvent *event)
{
    switch (int(event->type())) {
    case SetupReady:
    case SessionEnded:
    case DefaultButton:
    case UploadRunning:
    case SetupRestored:
    case SaveButtons:
    case Notice:
        return true;
    default:
        return false;
    }
}
