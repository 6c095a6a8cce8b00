// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SetupAnswerValues.h"

#include "setup/LittleEndian.h"

#include <algorithm>

using nelib::LittleEndian;

SetupAnswerValues SetupAnswerValues::forChannels(int channels)
{
    return {quint16(channels), quint16((channels + 3) / 4), quint16(std::min(channels, 4)),
            quint16(channels <= 8 ? 1 : 2)};
}

SetupAnswerValues SetupAnswerValues::fromParam(const PACKET_PARAM &param)
{
    const QByteArray bytes = param.toBytes();
    return {LittleEndian::u16(bytes, 12), LittleEndian::u16(bytes, 14),
            LittleEndian::u16(bytes, 16), LittleEndian::u16(bytes, 18)};
}

void SetupAnswerValues::writeTo(PACKET_PARAM &param) const
{
    QByteArray bytes = param.toBytes();
    LittleEndian::setU16(bytes, 12, alarmInputs);
    LittleEndian::setU16(bytes, 14, alarmOutputs);
    LittleEndian::setU16(bytes, 16, audioInputs);
    LittleEndian::setU16(bytes, 18, disks);
    param = PACKET_PARAM::fromBytes(bytes);
}
