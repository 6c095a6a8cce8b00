// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/PacketString.h"

#include "setup/LittleEndian.h"

#include <algorithm>

using nelib::LittleEndian;

namespace {

void setTerminatedText(QByteArray &bytes, qsizetype offset, qsizetype width, const QByteArray &text)
{
    LittleEndian::setText(bytes, offset, width,
                          QByteArrayView(text).first(std::min(text.size(), width - 1)));
}

} // namespace

QByteArray PACKET_STRING::toBytes() const
{
    QByteArray bytes(Size, '\0');
    setTerminatedText(bytes, MemberIdOffset, MemberIdWidth, memberId);
    setTerminatedText(bytes, PasswordOffset, PasswordWidth, password);
    LittleEndian::setU32(bytes, ClientKindOffset, clientKind);
    return bytes;
}

PACKET_STRING PACKET_STRING::fromBytes(QByteArrayView bytes)
{
    QByteArray padded = bytes.first(std::min(bytes.size(), Size)).toByteArray();
    padded.resize(Size, '\0');
    PACKET_STRING record;
    record.memberId = LittleEndian::text(padded, MemberIdOffset, MemberIdWidth);
    record.password = LittleEndian::text(padded, PasswordOffset, PasswordWidth);
    record.clientKind = LittleEndian::u32(padded, ClientKindOffset);
    return record;
}
