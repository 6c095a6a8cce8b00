// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace nelib {

// Little-endian fields at byte offsets inside a buffer. Every access is
// bounds-checked, because the buffers come from the network or from files:
// a read outside the buffer yields 0 (or empty text), a write outside it
// changes nothing and returns false.
class LittleEndian
{
public:
    static bool fits(qsizetype size, qsizetype offset, qsizetype width);

    static quint8 u8(QByteArrayView bytes, qsizetype offset);
    static quint16 u16(QByteArrayView bytes, qsizetype offset);
    static quint32 u32(QByteArrayView bytes, qsizetype offset);
    static qint32 i32(QByteArrayView bytes, qsizetype offset);

    // Fixed-width, zero-padded text: the bytes up to the first zero or the
    // end of the field, whichever comes first (a full field has no terminator).
    static QByteArray text(QByteArrayView bytes, qsizetype offset, qsizetype width);

    static bool setU8(QByteArray &bytes, qsizetype offset, quint8 value);
    static bool setU16(QByteArray &bytes, qsizetype offset, quint16 value);
    static bool setU32(QByteArray &bytes, qsizetype offset, quint32 value);
    static bool setI32(QByteArray &bytes, qsizetype offset, qint32 value);

    // Zero-fills the field, then copies at most `width` bytes of `value`.
    static bool setText(QByteArray &bytes, qsizetype offset, qsizetype width, QByteArrayView value);
};

} // namespace nelib
