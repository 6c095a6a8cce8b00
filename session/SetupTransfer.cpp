// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SetupTransfer.h"

#include "i18n/Translator.h"
#include "session/CWork.h"
#include "session/MessageSink.h"
#include "setup/ExportFile.h"
#include "setup/SetupFiles.h"

#include <QSaveFile>

using setup::SetupFiles;

bool SetupTransfer::exportFile(const CWork &work, const QString &path)
{
    const QByteArray bytes = setup::ExportFile::build(work.mirror());
    QSaveFile file(path);
    const bool written = !bytes.isEmpty() && file.open(QIODevice::WriteOnly)
                         && file.write(bytes) == bytes.size() && file.commit();
    // Shown as it stands on purpose, untranslated, written or not.
    MessageSink::show(QStringLiteral("Export completed"));
    return written;
}

SetupTransfer::Result SetupTransfer::importFile(CWork &work, const QString &path)
{
    const SetupFiles::FileContents file = SetupFiles::readImportFile(path);
    if (file.status == SetupFiles::FileStatus::Missing) {
        MessageSink::show(nelib::tr("File does not exist"));
        return Result::FileMissing;
    }
    // An unreadable file is all zeros here, which the checks refuse.
    return importData(work, file.bytes);
}

namespace {

// Why a whole-record write cannot start, or Sent when it can.
SetupTransfer::Result precondition(const CWork &work)
{
    if (!work.wholeRecordReceived())
        return SetupTransfer::Result::NoRecord;
    if (work.transferRunning())
        return SetupTransfer::Result::Busy;
    return SetupTransfer::Result::Sent;
}

SetupTransfer::Result start(CWork &work, CWork::WholeRecord kind, const QByteArray &record,
                            SetupTransfer::Result ready)
{
    if (ready == SetupTransfer::Result::Sent && !work.writeWholeRecord(kind, record))
        ready = SetupTransfer::Result::SendFailed;
    if (ready != SetupTransfer::Result::Sent)
        MessageSink::show(kind == CWork::WholeRecord::Import ? nelib::tr("Import Error!")
                                                             : nelib::tr("Default Setup Error!"));
    return ready;
}

} // namespace

SetupTransfer::Result SetupTransfer::importData(CWork &work, QByteArrayView file)
{
    // A record never received is no model to check the file against.
    const Result ready = precondition(work);
    if (ready == Result::Sent && SetupFiles::importFaults(file, work.mirror())) {
        MessageSink::show(nelib::tr("This file can not be imported."));
        return Result::FileRefused;
    }
    return start(work, CWork::WholeRecord::Import, SetupFiles::importedRecord(file, work.mirror()),
                 ready);
}

SetupTransfer::Result SetupTransfer::factoryDefault(CWork &work, const QString &defaultFile)
{
    const QString path = defaultFile.isEmpty() ? SetupFiles::defaultFilePath() : defaultFile;
    return restoreDefaults(work, SetupFiles::readDefaultFile(path).bytes);
}

SetupTransfer::Result SetupTransfer::restoreDefaults(CWork &work, QByteArrayView image)
{
    return start(work, CWork::WholeRecord::Default, SetupFiles::defaultRecord(image, work.mirror()),
                 precondition(work));
}
