// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>

// The login record, sent as the payload of the login command (272 bytes):
// member id at 0 (128 bytes), password at 128 (132 bytes), both zero-padded
// single-byte text; client kind u32 at 260; 8 reserved zero bytes at 264.
struct PACKET_STRING
{
    static constexpr qsizetype Size = 272;
    static constexpr qsizetype MemberIdOffset = 0;
    static constexpr qsizetype MemberIdWidth = 128;
    static constexpr qsizetype PasswordOffset = 128;
    static constexpr qsizetype PasswordWidth = 132;
    static constexpr qsizetype ClientKindOffset = 260;

    // The kind this setup client announces itself as.
    static constexpr quint32 SetupClientKind = 6;

    QByteArray memberId;
    QByteArray password;
    quint32 clientKind = SetupClientKind;

    // Text longer than its field is cut so that the field keeps its
    // terminating zero: recorders read both fields as C strings.
    QByteArray toBytes() const;
    // Text fields end at their first zero byte; a short input reads as if
    // padded with zeros.
    static PACKET_STRING fromBytes(QByteArrayView bytes);
};
