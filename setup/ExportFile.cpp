// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/ExportFile.h"

#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "setup/LittleEndian.h"
#include "setup/SetupRecordMap.h"

#include <QSaveFile>

using nelib::LittleEndian;

namespace setup {

static_assert(ExportFile::Size
                  == ExportFile::HeaderSize + SetupRecordMap::RecordSize
                         - SetupRecordMap::HeaderSize,
              "the file holds the header and every record byte after the record header");
static_assert(ExportFile::HeaderSize == SetupRecordMap::HeaderSize - ExportFile::RecordShift);

QByteArray ExportFile::build(QByteArrayView record)
{
    if (record.size() != SetupRecordMap::RecordSize)
        return {};
    QByteArray file(HeaderSize, '\0');
    LittleEndian::setU32(file, VersionOffset, SetupRecordMap::LayoutVersion);
    LittleEndian::setU32(file, FirstMarkOffset, FirstMark);
    LittleEndian::setU32(file, SecondMarkOffset, SecondMark);
    LittleEndian::setU32(file, ModelIdOffset,
                         LittleEndian::u32(record, SetupRecordMap::ModelIdOffset));
    LittleEndian::setU32(file, TrailerOffset, Trailer);
    file.append(record.sliced(SetupRecordMap::HeaderSize));
    return file;
}

QByteArray ExportFile::toRecord(QByteArrayView file)
{
    if (file.size() != Size)
        return {};
    QByteArray record(SetupRecordMap::HeaderSize, '\0');
    record.append(file.sliced(HeaderSize));
    LittleEndian::setU32(record, SetupRecordMap::LayoutVersionOffset,
                         LittleEndian::u32(file, VersionOffset));
    LittleEndian::setU32(record, SetupRecordMap::ModelIdOffset,
                         LittleEndian::u32(file, ModelIdOffset));
    FieldTable::setNumber(record, fields::header::recordSize, SetupRecordMap::RecordSize);
    FieldTable::setNumber(record, fields::header::channelRecords,
                          quint32(fields::camera::title.count));
    return record;
}

bool ExportFile::write(const QString &path, QByteArrayView record, QString *error)
{
    const QByteArray bytes = build(record);
    QSaveFile file(path);
    // The temporary file gets its mode before it gets a byte.
    if (bytes.isEmpty() || !file.open(QIODevice::WriteOnly)
        || !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        || file.write(bytes) != bytes.size() || !file.commit()) {
        *error = bytes.isEmpty() ? QStringLiteral("no whole record") : file.errorString();
        return false;
    }
    return true;
}

} // namespace setup
