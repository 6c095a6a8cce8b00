// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/PacketParam.h"

#include "setup/LittleEndian.h"

using nelib::LittleEndian;

QByteArray PACKET_PARAM::toBytes() const
{
    QByteArray bytes(Size, '\0');
    for (int i = 0; i < WordCount; ++i)
        LittleEndian::setU32(bytes, i * 4, words[i]);
    return bytes;
}

PACKET_PARAM PACKET_PARAM::fromBytes(QByteArrayView bytes)
{
    PACKET_PARAM param;
    for (int i = 0; i < WordCount; ++i)
        param.words[i] = LittleEndian::u32(bytes, i * 4);
    return param;
}
