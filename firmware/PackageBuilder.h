// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "firmware/FirmwareVersion.h"

#include <QByteArray>
#include <QString>

#include <vector>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

namespace firmware {

// Writes firmware packages (see FirmwarePackage for the layout). The client
// only reads packages; this is for the tests, the demo and the benchmark,
// through make-krp-package. Component data are streamed to the file, so a
// package may be far larger than memory allows.
class PackageBuilder
{
public:
    explicit PackageBuilder(FirmwareVersion version);

    // Where the first component's data start; right after the header unless
    // a test wants a gap (which is written as zero bytes).
    void setDataOffset(quint32 offset) { m_dataOffset = offset; }

    void addComponent(quint32 type, FirmwareVersion version, const QByteArray &data);
    // `size` pseudo-random bytes, the same for the same component position,
    // type and size on every run.
    void addGeneratedComponent(quint32 type, FirmwareVersion version, quint32 size);
    // The contents of the file at `path`, read when the package is written.
    bool addFileComponent(quint32 type, FirmwareVersion version, const QString &path,
                          QString *error);

    QByteArray header() const;
    // Replaces `path` as a whole.
    bool write(const QString &path, QString *error) const;
    // The whole package in memory, for small test packages.
    QByteArray build() const;

private:
    enum class Source { Bytes, Generated, File };
    struct Component
    {
        quint32 type;
        FirmwareVersion version;
        quint32 size;
        Source source;
        QByteArray bytes;
        QString file;
    };

    bool writeTo(QIODevice &out, QString *error) const;
    bool writeComponent(std::size_t index, QIODevice &out, QString *error) const;

    FirmwareVersion m_version;
    quint32 m_dataOffset;
    std::vector<Component> m_components;
};

} // namespace firmware
