// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/Frame.h"

#include "setup/LittleEndian.h"

using nelib::LittleEndian;

namespace session {

QByteArray Frame::encode(quint32 sequence, qint32 command, const PACKET_PARAM &param,
                         QByteArrayView payload)
{
    if (payload.size() > MaxPayloadSize)
        return {};
    QByteArray frame(HeadSize, '\0');
    frame.reserve(HeadSize + payload.size());
    LittleEndian::setU32(frame, MagicOffset, Magic);
    LittleEndian::setU32(frame, VersionOffset, ProtocolVersion);
    LittleEndian::setU32(frame, SequenceOffset, sequence);
    LittleEndian::setU32(frame, TotalLengthOffset, quint32(HeadSize + payload.size()));
    LittleEndian::setI32(frame, CommandOffset, command);
    frame.replace(ParamOffset, PACKET_PARAM::Size, param.toBytes());
    frame.append(payload);
    return frame;
}

qsizetype Frame::checkHead(QByteArrayView head)
{
    if (head.size() < HeadSize || LittleEndian::u32(head, MagicOffset) != Magic)
        return -1;
    const qsizetype total = LittleEndian::u32(head, TotalLengthOffset);
    return total >= HeadSize && total <= MaxSize ? total : -1;
}

std::optional<Frame> Frame::decode(QByteArrayView packet)
{
    if (checkHead(packet) != packet.size())
        return std::nullopt;
    Frame frame;
    frame.sequence = LittleEndian::u32(packet, SequenceOffset);
    frame.command = LittleEndian::i32(packet, CommandOffset);
    frame.param = PACKET_PARAM::fromBytes(packet.sliced(ParamOffset, PACKET_PARAM::Size));
    frame.payload = packet.sliced(HeadSize).toByteArray();
    return frame;
}

} // namespace session
