// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/FirmwarePackage.h"

#include "i18n/Translator.h"
#include "setup/LittleEndian.h"

#include <QFile>

using nelib::LittleEndian;

namespace firmware {

std::optional<FirmwarePackage> FirmwarePackage::open(const QString &path, Fault *fault)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *fault = Fault::Unreadable;
        return std::nullopt;
    }
    const QByteArray header = file.read(HeaderSize);
    if (header.size() < HeaderSize && file.error() != QFileDevice::NoError) {
        *fault = Fault::Unreadable;
        return std::nullopt;
    }
    std::optional<FirmwarePackage> package = fromHeader(header, file.size(), fault);
    if (package)
        package->m_path = path;
    return package;
}

std::optional<FirmwarePackage> FirmwarePackage::fromHeader(QByteArrayView header, qint64 fileSize,
                                                           Fault *fault)
{
    *fault = Fault::None;
    if (header.size() < HeaderSize || fileSize < HeaderSize) {
        *fault = Fault::ShorterThanHeader;
        return std::nullopt;
    }
    header = header.first(HeaderSize);

    const quint64 count = LittleEndian::u32(header, CountOffset);
    if (quint64(TableOffset) + quint64(EntrySize) * count > quint64(HeaderSize)) {
        *fault = Fault::TableTooLarge;
        return std::nullopt;
    }
    const quint32 dataOffset = LittleEndian::u32(header, DataOffsetOffset);
    if (dataOffset < HeaderSize) {
        *fault = Fault::DataOffsetInHeader;
        return std::nullopt;
    }
    if (dataOffset > fileSize) {
        *fault = Fault::DataOffsetPastEnd;
        return std::nullopt;
    }

    FirmwarePackage package;
    package.m_header = header.toByteArray();
    package.m_dataOffset = dataOffset;
    package.m_version = FirmwareVersion::fromBytes(header, VersionOffset);
    package.m_fileSize = fileSize;
    // At most 31 sizes below 4 GiB each: the sum cannot overflow 64 bits.
    qint64 offset = dataOffset;
    for (quint64 i = 0; i < count; ++i) {
        const qsizetype entry = TableOffset + EntrySize * qsizetype(i);
        Component component;
        component.type = LittleEndian::u32(header, entry + EntryTypeOffset);
        component.version = FirmwareVersion::fromBytes(header, entry + EntryVersionOffset);
        component.size = LittleEndian::u32(header, entry + EntrySizeOffset);
        component.offset = offset;
        offset += component.size;
        if (offset > fileSize) {
            *fault = Fault::ComponentsPastEnd;
            return std::nullopt;
        }
        package.m_components.push_back(component);
    }
    return package;
}

QString FirmwarePackage::faultMessage(Fault fault)
{
    switch (fault) {
    case Fault::None:
        return {};
    case Fault::Unreadable:
        return nelib::tr("The firmware package cannot be read.");
    case Fault::ShorterThanHeader:
        return nelib::tr("The firmware package is shorter than its 3072-byte header.");
    case Fault::TableTooLarge:
        return nelib::tr("The component table of the firmware package does not fit in its header.");
    case Fault::DataOffsetInHeader:
        return nelib::tr("The data of the firmware package would start inside its header.");
    case Fault::DataOffsetPastEnd:
        return nelib::tr("The data of the firmware package would start past the end of the file.");
    case Fault::ComponentsPastEnd:
        return nelib::tr("The components of the firmware package run past the end of the file.");
    }
    return {};
}

} // namespace firmware
