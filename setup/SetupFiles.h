// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/SetupRecordMap.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFlags>
#include <QString>

#include <array>

namespace setup {

// The files that carry whole setup records outside a recorder: the factory
// default image DEFDVRSETUP.DAT (every byte at its record offset) and the
// export file that an import reads back (ExportFile: record offset - 12).
// Both are taken block by block, never field by field, and a file is never
// trusted to be as long as it should be: what it lacks counts as zeros.
class SetupFiles
{
public:
    // The blocks the files divide the record after its header into.
    struct FileBlock
    {
        char name;
        int offset;
        int length;
        bool fromFiles; // false: the recorder's own, never replaced from a file

        constexpr int end() const { return offset + length; }
    };

    // Block F (the recorder's network identity and streams) belongs to the
    // recorder it came from, so a file never overwrites it.
    static constexpr std::array<FileBlock, 8> Blocks {{
        {'A', 32, 572, true},
        {'B', 604, 696, true},
        {'C', 1300, 7172, true},
        {'D', 8472, 5312, true},
        {'E', 13784, 92, true},
        {'F', 13876, 276, false},
        {'G', 14152, 836, true},
        {'H', 14988, 160, true},
    }};

    // The monitor settings inside block B describe the recorder's own
    // hardware: an import keeps them, a factory default resets them.
    static constexpr int MonitorOffset = 684;
    static constexpr int MonitorLength = 16;

    static constexpr char DefaultFileName[] = "DEFDVRSETUP.DAT";

    enum class FileStatus { Read, Missing, Unreadable };

    // A file read into a buffer of fixed size; what the file did not fill is
    // zero, and all of it is zero when the file could not be read.
    struct FileContents
    {
        QByteArray bytes;
        FileStatus status = FileStatus::Missing;
        qsizetype bytesRead = 0;
        qint64 fileSize = 0; // the whole file's, which may exceed the buffer
    };

    enum class ImportFault {
        Version = 0x1, // the file's or the current record's layout version
        FirstMark = 0x2,
        SecondMark = 0x4,
        Identity = 0x8, // made for another recorder model
    };
    Q_DECLARE_FLAGS(ImportFaults, ImportFault)

    enum class DefaultFault {
        Size = 0x1, // not exactly one record
        Version = 0x2, // not our layout version
        Marks = 0x4, // the header lacks our record size and channel-record count
    };
    Q_DECLARE_FLAGS(DefaultFaults, DefaultFault)

    // Reads at most `size` bytes of `path`.
    static FileContents read(const QString &path, qsizetype size);
    static FileContents readImportFile(const QString &path);
    static FileContents readDefaultFile(const QString &path);
    // The installed DEFDVRSETUP.DAT (see nelib::DataFiles); needs a QCoreApplication.
    static QString defaultFilePath();

    // Why an import file may not be imported into `record`; none means it may.
    static ImportFaults importFaults(QByteArrayView file, QByteArrayView record);
    // Why a file someone named is not a default setup file; none means it
    // is. The installed file is trusted as the window trusts it.
    static DefaultFaults defaultFaults(const FileContents &file);
    // `record` with blocks A-E, G and H taken from an import file, the header,
    // block F and the monitor settings left as they are. Empty when `record`
    // is not whole.
    static QByteArray importedRecord(QByteArrayView file, QByteArrayView record);
    // `record` with blocks A-E, G and H taken from the default image, the
    // header and block F left as they are. Empty when `record` is not whole.
    static QByteArray defaultRecord(QByteArrayView image, QByteArrayView record);

private:
    static void copyBlocks(QByteArray &record, QByteArrayView source, qsizetype shift);
};

Q_DECLARE_OPERATORS_FOR_FLAGS(SetupFiles::ImportFaults)
Q_DECLARE_OPERATORS_FOR_FLAGS(SetupFiles::DefaultFaults)

} // namespace setup
