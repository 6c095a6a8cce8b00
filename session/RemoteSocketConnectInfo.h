// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

// Where to connect. The record never leaves the process; of its original
// fixed layout (address 260 bytes, port, two reserved words, flags: 276 bytes)
// only the address width still matters, as the limit on the address length.
struct REMOTESOCKET_CONNECT_INFO
{
    static constexpr qsizetype AddressWidth = 260;
    // The connection flags every client passes; they travel in the opening
    // frame, where a recorder may check them.
    static constexpr quint32 DefaultFlags = 0x500000;

    // Host name or dotted IPv4 address, single-byte text. It ends at its first
    // zero byte, if any, and must leave room for a terminator in the field.
    QByteArray address;
    quint32 port = 0;
    quint32 flags = DefaultFlags;
};
