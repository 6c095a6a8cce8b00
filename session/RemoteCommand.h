// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

// Command numbers of the frames a setup client and a recorder exchange. The
// wire carries them as unsigned 32-bit words in two's complement, so the
// keep-alive -65535 travels as 0xFFFF0001.
namespace RemoteCommand {

// Kept inside the transport: the opening exchange.
inline constexpr qint32 Open = 0x0F00;
inline constexpr qint32 OpenAck = 0x0F01;

inline constexpr qint32 Login = 4097; // 0x1001, PACKET_STRING payload
inline constexpr qint32 LoginAnswer = 4098; // 0x1002
inline constexpr qint32 DateTime = 4177; // 0x1051
inline constexpr qint32 DateTimeAnswer = 4178; // 0x1052
inline constexpr qint32 SetupRequest = 4225; // 0x1081
inline constexpr qint32 SetupAnswer = 4226; // 0x1082
inline constexpr qint32 FirmwarePacket = 4227; // 0x1083
inline constexpr qint32 FirmwareReply = 4228; // 0x1084
inline constexpr qint32 SetupWrite = 4608; // 0x1200, also the commit (word 0 = 9)
inline constexpr qint32 SetupWriteAck = 4609; // 0x1201
inline constexpr qint32 KeepAlive = -65535; // 0xFFFF0001, never answered

} // namespace RemoteCommand
