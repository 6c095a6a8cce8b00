// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/KRemoteSocket.h"

// What a SocketNotifyEvent reports: which handle, and what happened.
struct REMOTESOCKET_NOTIFY
{
    // The TCP connection is established.
    static constexpr quint32 Connected = 0;
    // The recorder acknowledged the opening frame.
    static constexpr quint32 InitAcknowledged = 0x1000;
    // A frame arrived; the event carries it.
    static constexpr quint32 PacketReceived = 0x1001;
    // The connection attempt failed (refused, unresolvable, unreachable).
    // Our transport's own addition: a hanging attempt reports nothing.
    static constexpr quint32 ConnectFailed = 0x1002;

    KRSMGAPI_HANDLE handle = nullptr;
    quint32 kind = Connected;
};
