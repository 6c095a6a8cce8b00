// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace setup {

// The file an installer exports a recorder's setup to and imports it from:
// a 20-byte header, then the setup record from offset 32 on, so that a file
// offset is the record offset minus 12. The header names the layout and the
// recorder model, which an import must match.
class ExportFile
{
public:
    static constexpr qsizetype Size = 15136;
    static constexpr qsizetype HeaderSize = 20;
    static constexpr qsizetype RecordShift = 12; // file offset = record offset - RecordShift

    static constexpr qsizetype VersionOffset = 0;
    static constexpr qsizetype FirstMarkOffset = 4;
    static constexpr qsizetype SecondMarkOffset = 8;
    static constexpr qsizetype ModelIdOffset = 12;
    static constexpr qsizetype TrailerOffset = 16;

    static constexpr quint32 FirstMark = 0x2B4D4B4B;
    static constexpr quint32 SecondMark = 0x41524755;
    static constexpr quint32 Trailer = 63; // written as it is, never checked

    // The file for a whole record; empty when `record` is not a whole record.
    static QByteArray build(QByteArrayView record);
    // The whole record an export file holds: the header keeps what the file
    // names (layout version, model) and what the layout fixes; the software
    // version stays unknown (zero). Empty when `file` is not Size bytes.
    // build() of the result gives `file` back when its trailer is ours.
    static QByteArray toRecord(QByteArrayView file);
    // Writes the file for a whole record to `path` through a temporary file
    // renamed into place, readable by its owner only (it holds every
    // account's password), whatever the umask or an older file's mode.
    // False with `error` set when it could not.
    static bool write(const QString &path, QByteArrayView record, QString *error);
};

} // namespace setup
