// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "firmware/FirmwareVersion.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace firmware {

// A firmware update package (.KRP file), little-endian: a 3072-byte header
//   4 u32 file offset of the first component's data | 8 package version a.b.c.d
//   12 u32 component count | 32 + 96 i component entry i
// and then the components' data, one after another in table order. An entry
// holds the component's type (u32 at 0), version (4 bytes at 4) and size
// (u32 at 8); the rest of the header is not ours to read.
//
// Only the header is held: choosing a package reads and checks it, and the
// upload streams the data from the file later.
class FirmwarePackage
{
public:
    static constexpr qsizetype HeaderSize = 3072;
    static constexpr qsizetype DataOffsetOffset = 4;
    static constexpr qsizetype VersionOffset = 8;
    static constexpr qsizetype CountOffset = 12;
    static constexpr qsizetype TableOffset = 32;
    static constexpr qsizetype EntrySize = 96;
    static constexpr qsizetype EntryTypeOffset = 0;
    static constexpr qsizetype EntryVersionOffset = 4;
    static constexpr qsizetype EntrySizeOffset = 8;
    static constexpr qsizetype MaxComponents = (HeaderSize - TableOffset) / EntrySize;

    // Why a file is not taken as a package.
    enum class Fault {
        None,
        Unreadable,
        ShorterThanHeader,
        TableTooLarge, // the component table does not fit in the header
        DataOffsetInHeader,
        DataOffsetPastEnd,
        ComponentsPastEnd,
    };

    struct Component
    {
        quint32 type = 0;
        FirmwareVersion version;
        quint32 size = 0;
        qint64 offset = 0; // of its data in the file
    };

    // Reads and checks the header of the file at `path`; on failure `fault`
    // says why.
    static std::optional<FirmwarePackage> open(const QString &path, Fault *fault);
    // Checks `header` as the start of a file of `fileSize` bytes.
    static std::optional<FirmwarePackage> fromHeader(QByteArrayView header, qint64 fileSize,
                                                     Fault *fault);
    // What the operator is told about `fault`, translated.
    static QString faultMessage(Fault fault);

    QString path() const { return m_path; }
    const QByteArray &header() const { return m_header; }
    quint32 dataOffset() const { return m_dataOffset; }
    FirmwareVersion version() const { return m_version; }
    const std::vector<Component> &components() const { return m_components; }
    qint64 fileSize() const { return m_fileSize; }

private:
    QString m_path;
    QByteArray m_header;
    quint32 m_dataOffset = 0;
    FirmwareVersion m_version;
    std::vector<Component> m_components;
    qint64 m_fileSize = 0;
};

} // namespace firmware
