// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SetupFiles.h"

#include "setup/ExportFile.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "setup/LittleEndian.h"

#include "i18n/DataFiles.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstring>

using nelib::LittleEndian;

namespace setup {

namespace {

constexpr bool blocksTileTheRecord()
{
    int expected = SetupRecordMap::HeaderSize;
    for (const SetupFiles::FileBlock &b : SetupFiles::Blocks) {
        if (b.offset != expected || b.length <= 0)
            return false;
        expected = b.end();
    }
    return expected == SetupRecordMap::RecordSize;
}
static_assert(blocksTileTheRecord(), "the file blocks cover the record after its header");

// A to E are the record's first five blocks; F, G and H split the last one.
constexpr bool blocksMatchTheRecordMap()
{
    for (int i = 0; i < 5; ++i) {
        const BlockInfo &b = SetupRecordMap::Blocks[std::size_t(i)];
        if (SetupFiles::Blocks[std::size_t(i)].offset != b.offset
            || SetupFiles::Blocks[std::size_t(i)].length != b.length)
            return false;
    }
    return SetupFiles::Blocks[5].offset == SetupRecordMap::Blocks[5].offset;
}
static_assert(blocksMatchTheRecordMap());
static_assert(SetupFiles::MonitorOffset >= SetupFiles::Blocks[1].offset
              && SetupFiles::MonitorOffset + SetupFiles::MonitorLength
                     <= SetupFiles::Blocks[1].end());

} // namespace

SetupFiles::FileContents SetupFiles::read(const QString &path, qsizetype size)
{
    FileContents contents;
    contents.bytes = QByteArray(size, '\0');
    if (!QFileInfo::exists(path)) {
        contents.status = FileStatus::Missing;
        return contents;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        contents.status = FileStatus::Unreadable;
        return contents;
    }
    const qint64 n = file.read(contents.bytes.data(), size);
    if (n < 0) {
        contents.bytes.fill('\0');
        contents.status = FileStatus::Unreadable;
        return contents;
    }
    contents.status = FileStatus::Read;
    contents.bytesRead = n;
    contents.fileSize = file.size();
    return contents;
}

SetupFiles::FileContents SetupFiles::readImportFile(const QString &path)
{
    return read(path, ExportFile::Size);
}

SetupFiles::FileContents SetupFiles::readDefaultFile(const QString &path)
{
    return read(path, SetupRecordMap::RecordSize);
}

QString SetupFiles::defaultFilePath()
{
    return nelib::DataFiles::path(QLatin1StringView(DefaultFileName));
}

SetupFiles::ImportFaults SetupFiles::importFaults(QByteArrayView file, QByteArrayView record)
{
    // Checked as read: a file that ends inside its header counts as zeros there.
    QByteArray header(ExportFile::HeaderSize, '\0');
    std::copy_n(file.data(), std::min<qsizetype>(file.size(), ExportFile::HeaderSize),
                header.data());

    ImportFaults faults;
    if (LittleEndian::u32(header, ExportFile::VersionOffset) != SetupRecordMap::LayoutVersion
        || LittleEndian::u32(record, SetupRecordMap::LayoutVersionOffset)
               != SetupRecordMap::LayoutVersion)
        faults |= ImportFault::Version;
    if (LittleEndian::u32(header, ExportFile::FirstMarkOffset) != ExportFile::FirstMark)
        faults |= ImportFault::FirstMark;
    if (LittleEndian::u32(header, ExportFile::SecondMarkOffset) != ExportFile::SecondMark)
        faults |= ImportFault::SecondMark;
    // A record too short to hold the word cannot vouch for any file.
    if (!LittleEndian::fits(record.size(), SetupRecordMap::ModelIdOffset, 4)
        || LittleEndian::u32(header, ExportFile::ModelIdOffset)
               != LittleEndian::u32(record, SetupRecordMap::ModelIdOffset))
        faults |= ImportFault::Identity;
    return faults;
}

SetupFiles::DefaultFaults SetupFiles::defaultFaults(const FileContents &file)
{
    DefaultFaults faults;
    if (file.fileSize != SetupRecordMap::RecordSize || file.bytesRead != SetupRecordMap::RecordSize)
        faults |= DefaultFault::Size;
    const QByteArray &bytes = file.bytes;
    if (FieldTable::number(bytes, fields::header::layoutVersion) != SetupRecordMap::LayoutVersion)
        faults |= DefaultFault::Version;
    if (FieldTable::number(bytes, fields::header::recordSize) != SetupRecordMap::RecordSize
        || FieldTable::number(bytes, fields::header::channelRecords)
               != quint32(fields::camera::title.count))
        faults |= DefaultFault::Marks;
    return faults;
}

QByteArray SetupFiles::importedRecord(QByteArrayView file, QByteArrayView record)
{
    if (record.size() != SetupRecordMap::RecordSize)
        return {};
    QByteArray result = record.toByteArray();
    copyBlocks(result, file, ExportFile::RecordShift);
    std::memcpy(result.data() + MonitorOffset, record.data() + MonitorOffset, MonitorLength);
    return result;
}

QByteArray SetupFiles::defaultRecord(QByteArrayView image, QByteArrayView record)
{
    if (record.size() != SetupRecordMap::RecordSize)
        return {};
    QByteArray result = record.toByteArray();
    copyBlocks(result, image, 0);
    return result;
}

// Record offset o is read from `source` at o - `shift`; bytes the source
// does not have are zero.
void SetupFiles::copyBlocks(QByteArray &record, QByteArrayView source, qsizetype shift)
{
    for (const FileBlock &block : Blocks) {
        if (!block.fromFiles)
            continue;
        const qsizetype start = block.offset - shift;
        const qsizetype available = std::clamp<qsizetype>(source.size() - start, 0, block.length);
        char *target = record.data() + block.offset;
        if (available > 0)
            std::memcpy(target, source.data() + start, std::size_t(available));
        std::memset(target + available, 0, std::size_t(block.length - available));
    }
}

} // namespace setup
