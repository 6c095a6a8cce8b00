// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/PacketParam.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace session {

// One frame of the wire protocol: a 60-byte head, then the payload. All head
// fields are little-endian u32:
//   0 magic "KRSP" | 4 version | 8 sequence | 12 reserved | 16 total length
//   20 reserved | 24 command | 28 PACKET_PARAM (32 bytes) | 60 payload
// A received packet reaches its receiver in exactly this layout, so the
// offsets below are also how the session reads a packet.
struct Frame
{
    static constexpr quint32 Magic = 0x5053524B; // the bytes "KRSP"
    static constexpr quint32 ProtocolVersion = 1;
    static constexpr qsizetype HeadSize = 60;
    // The largest firmware chunk; setup records are far smaller.
    static constexpr qsizetype MaxPayloadSize = 1024 * 1024;
    static constexpr qsizetype MaxSize = HeadSize + MaxPayloadSize;

    static constexpr qsizetype MagicOffset = 0;
    static constexpr qsizetype VersionOffset = 4;
    static constexpr qsizetype SequenceOffset = 8;
    static constexpr qsizetype TotalLengthOffset = 16;
    static constexpr qsizetype CommandOffset = 24;
    static constexpr qsizetype ParamOffset = 28;

    quint32 sequence = 0;
    qint32 command = 0;
    PACKET_PARAM param;
    QByteArray payload;

    // The whole frame; empty when the payload is larger than any receiver
    // accepts.
    static QByteArray encode(quint32 sequence, qint32 command, const PACKET_PARAM &param,
                             QByteArrayView payload = {});

    // The total length that a head announces, or -1 when the head is
    // malformed: fewer than HeadSize bytes, a wrong magic, or a total length
    // outside [HeadSize, MaxSize]. The version is not checked.
    static qsizetype checkHead(QByteArrayView head);

    // A whole packet taken apart; nothing when its head is malformed or
    // announces another length than the packet has.
    static std::optional<Frame> decode(QByteArrayView packet);
};

} // namespace session
