// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QEvent>

// The messages the session and the pages send to the main window. The type
// numbers are fixed message numbers of the session and all lie in Qt's user
// event range. A message of the session worker carries the worker's serial
// number (CWork::serial()), so that the window drops what an ended session
// left in its queue; the pages' messages carry 0.
class SessionMessage : public QEvent
{
public:
    enum Kind : int {
        SetupReady = 2024, // the setup record arrived; fill the pages
        SessionEnded = 2026, // the session ended or failed
        DefaultButton = 3026, // wParam 1 hides the main window's Default button
        UploadRunning = 3027, // wParam 0 an upload starts, 1 it ended
        SetupRestored = 3029, // an import or factory default was acknowledged
        SaveButtons = 3030, // with lParam 1: wParam 0 enables Save/Cancel/Default
        Notice = 3031, // wParam a SessionNotice::Kind, lParam its login code
    };

    explicit SessionMessage(Kind kind, qintptr wParam = 0, qintptr lParam = 0, quint64 source = 0);

    Kind kind() const { return Kind(type()); }
    qintptr wParam() const { return m_wParam; }
    qintptr lParam() const { return m_lParam; }
    quint64 source() const { return m_source; }

    static bool isSessionMessage(const QEvent *event);

private:
    qintptr m_wParam;
    qintptr m_lParam;
    quint64 m_source;
};
