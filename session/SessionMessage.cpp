#include "session/SessionMessage.h"

static_assert(SessionMessage::SetupReady >= QEvent::User
                  && SessionMessage::SaveButtons <= QEvent::MaxUser,
              "session messages must be user events");

SessionMessage::SessionMessage(Kind kind, qintptr wParam, qintptr lParam)
    : QEvent(QEvent::Type(kind))
    , m_wParam(wParam)
    , m_lParam(lParam)
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
        return true;
    default:
        return false;
    }
}
