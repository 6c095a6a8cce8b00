// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/RecordFile.h"

#include "setup/ExportFile.h"
#include "setup/SetupFiles.h"

#include <QFileInfo>

namespace setup {

namespace {

RecordFile::Problem exportProblem(const QByteArray &file, const QByteArray &record)
{
    // The record comes from the file, so only the file's own header can fail.
    const SetupFiles::ImportFaults faults = SetupFiles::importFaults(file, record);
    if (faults & SetupFiles::ImportFault::Version)
        return RecordFile::Problem::Version;
    return faults ? RecordFile::Problem::Marks : RecordFile::Problem::None;
}

RecordFile::Problem defaultProblem(const SetupFiles::FileContents &file)
{
    const SetupFiles::DefaultFaults faults = SetupFiles::defaultFaults(file);
    if (faults & SetupFiles::DefaultFault::Size)
        return RecordFile::Problem::Size;
    if (faults & SetupFiles::DefaultFault::Version)
        return RecordFile::Problem::Version;
    return faults ? RecordFile::Problem::Marks : RecordFile::Problem::None;
}

} // namespace

RecordFile::Contents RecordFile::read(const QString &path)
{
    Contents contents;
    const QFileInfo info(path);
    if (info.isDir()) {
        contents.problem = Problem::Folder;
        return contents;
    }
    // A FIFO or a device would be waited on, not read.
    if (!info.isFile())
        return contents;
    contents.fileSize = info.size();
    const bool exportFile = contents.fileSize == ExportFile::Size;
    if (!exportFile && contents.fileSize != SetupRecordMap::RecordSize) {
        contents.problem = Problem::Size;
        return contents;
    }
    contents.kind = exportFile ? Kind::Export : Kind::Default;
    const SetupFiles::FileContents file
        = exportFile ? SetupFiles::readImportFile(path) : SetupFiles::readDefaultFile(path);
    if (file.status != SetupFiles::FileStatus::Read)
        return contents;
    if (file.bytesRead != file.bytes.size() || file.fileSize != contents.fileSize) {
        contents.problem = Problem::Size;
        return contents;
    }

    QByteArray record = exportFile ? ExportFile::toRecord(file.bytes) : file.bytes;
    contents.problem = exportFile ? exportProblem(file.bytes, record) : defaultProblem(file);
    if (contents.problem == Problem::None)
        contents.record = record;
    return contents;
}

} // namespace setup
