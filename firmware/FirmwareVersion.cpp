// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/FirmwareVersion.h"

#include "setup/LittleEndian.h"

#include <QStringList>

using nelib::LittleEndian;

namespace firmware {

FirmwareVersion FirmwareVersion::fromBytes(QByteArrayView bytes, qsizetype offset)
{
    FirmwareVersion version;
    for (std::size_t i = 0; i < version.parts.size(); ++i)
        version.parts[i] = LittleEndian::u8(bytes, offset + qsizetype(i));
    return version;
}

std::optional<FirmwareVersion> FirmwareVersion::parse(QStringView text)
{
    const QList<QStringView> fields = text.split(u'.');
    FirmwareVersion version;
    if (fields.size() != qsizetype(version.parts.size()))
        return std::nullopt;
    for (std::size_t i = 0; i < version.parts.size(); ++i) {
        bool ok = false;
        const uint value = fields[qsizetype(i)].toUInt(&ok);
        if (!ok || value > 255)
            return std::nullopt;
        version.parts[i] = quint8(value);
    }
    return version;
}

QByteArray FirmwareVersion::toBytes() const
{
    QByteArray bytes(qsizetype(parts.size()), '\0');
    for (std::size_t i = 0; i < parts.size(); ++i)
        LittleEndian::setU8(bytes, qsizetype(i), parts[i]);
    return bytes;
}

QString FirmwareVersion::toString() const
{
    return QString::asprintf("%d.%d.%d.%d", parts[0], parts[1], parts[2], parts[3]);
}

} // namespace firmware
