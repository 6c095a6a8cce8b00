// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

// The words of the firmware upload exchange (commands 4227 and 4228), shared
// by the uploader, the simulated recorder and the tests.
namespace firmware::PacketWords {

// Word 0 of a firmware packet.
inline constexpr quint32 Header = 1;
inline constexpr quint32 Data = 2; // a chunk or an end marker
inline constexpr quint32 Stop = 4;

// Word 6 of a data packet.
inline constexpr quint32 LaterChunk = 0;
inline constexpr quint32 FirstChunk = 1;
inline constexpr quint32 EndOfComponent = 15;
inline constexpr quint32 EndOfPackage = 16;

// Word 0 of a reply: to the header, or to a data packet.
inline constexpr quint32 HeaderReply = 1;
inline constexpr quint32 DataReply = 2;
// Word 1 of the header reply.
inline constexpr quint32 GoOn = 1;
inline constexpr quint32 Busy = 4;
inline constexpr quint32 Decline = 5;
// Word 2 of a header reply that goes on: the version data follow.
inline constexpr quint32 VersionDataFollows = 4;
// Word 1 of a data reply: anything else refuses the packet.
inline constexpr quint32 Accepted = 1;
inline constexpr quint32 Refused = 0;

} // namespace firmware::PacketWords
