// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/LittleEndian.h"

#include <algorithm>

namespace nelib {

namespace {

quint32 readUnsigned(QByteArrayView bytes, qsizetype offset, qsizetype width)
{
    if (!LittleEndian::fits(bytes.size(), offset, width))
        return 0;
    quint32 value = 0;
    for (qsizetype i = width - 1; i >= 0; --i)
        value = (value << 8) | quint8(bytes[offset + i]);
    return value;
}

bool writeUnsigned(QByteArray &bytes, qsizetype offset, qsizetype width, quint32 value)
{
    if (!LittleEndian::fits(bytes.size(), offset, width))
        return false;
    char *out = bytes.data() + offset;
    for (qsizetype i = 0; i < width; ++i, value >>= 8)
        out[i] = char(value & 0xFF);
    return true;
}

} // namespace

bool LittleEndian::fits(qsizetype size, qsizetype offset, qsizetype width)
{
    return offset >= 0 && width >= 0 && offset <= size && width <= size - offset;
}

quint8 LittleEndian::u8(QByteArrayView bytes, qsizetype offset)
{
    return quint8(readUnsigned(bytes, offset, 1));
}

quint16 LittleEndian::u16(QByteArrayView bytes, qsizetype offset)
{
    return quint16(readUnsigned(bytes, offset, 2));
}

quint32 LittleEndian::u32(QByteArrayView bytes, qsizetype offset)
{
    return readUnsigned(bytes, offset, 4);
}

qint32 LittleEndian::i32(QByteArrayView bytes, qsizetype offset)
{
    return qint32(readUnsigned(bytes, offset, 4));
}

QByteArray LittleEndian::text(QByteArrayView bytes, qsizetype offset, qsizetype width)
{
    if (!fits(bytes.size(), offset, width))
        return {};
    const QByteArrayView field = bytes.sliced(offset, width);
    const qsizetype end = field.indexOf('\0');
    return (end < 0 ? field : field.first(end)).toByteArray();
}

bool LittleEndian::setU8(QByteArray &bytes, qsizetype offset, quint8 value)
{
    return writeUnsigned(bytes, offset, 1, value);
}

bool LittleEndian::setU16(QByteArray &bytes, qsizetype offset, quint16 value)
{
    return writeUnsigned(bytes, offset, 2, value);
}

bool LittleEndian::setU32(QByteArray &bytes, qsizetype offset, quint32 value)
{
    return writeUnsigned(bytes, offset, 4, value);
}

bool LittleEndian::setI32(QByteArray &bytes, qsizetype offset, qint32 value)
{
    return writeUnsigned(bytes, offset, 4, quint32(value));
}

bool LittleEndian::setText(QByteArray &bytes, qsizetype offset, qsizetype width,
                           QByteArrayView value)
{
    if (!fits(bytes.size(), offset, width))
        return false;
    char *out = bytes.data() + offset;
    std::fill_n(out, width, '\0');
    std::copy_n(value.data(), std::min(width, value.size()), out);
    return true;
}

} // namespace nelib
