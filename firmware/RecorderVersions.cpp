// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/RecorderVersions.h"

#include "setup/LittleEndian.h"

using nelib::LittleEndian;

namespace firmware {

namespace {

constexpr quint32 LowHalf = 0xFFFF;
constexpr std::size_t LowHalfTypes = 3; // 2, 8 and 16 lead the table

} // namespace

std::optional<RecorderVersions> RecorderVersions::fromBytes(QByteArrayView data)
{
    if (data.size() != ShortSize && data.size() != LongSize)
        return std::nullopt;
    RecorderVersions versions;
    versions.overall = FirmwareVersion::fromBytes(data, 0);
    for (std::size_t i = 0; i < KnownTypes.size(); ++i)
        versions.components[i]
            = FirmwareVersion::fromBytes(data, ComponentsOffset + 4 * qsizetype(i));
    versions.model = LittleEndian::text(data, ModelOffset, ModelSize);
    return versions;
}

QByteArray RecorderVersions::toBytes() const
{
    QByteArray bytes(ShortSize, '\0');
    bytes.replace(0, 4, overall.toBytes());
    for (std::size_t i = 0; i < KnownTypes.size(); ++i)
        bytes.replace(ComponentsOffset + 4 * qsizetype(i), 4, components[i].toBytes());
    LittleEndian::setText(bytes, ModelOffset, ModelSize, model);
    return bytes;
}

std::optional<std::size_t> RecorderVersions::slotOf(quint32 type)
{
    for (std::size_t i = 0; i < KnownTypes.size(); ++i) {
        const quint32 compared = i < LowHalfTypes ? type & LowHalf : type;
        if (compared == KnownTypes[i])
            return i;
    }
    return std::nullopt;
}

} // namespace firmware
