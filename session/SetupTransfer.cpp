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

SetupTransfer::Result SetupTransfer::importData(CWork &work, QByteArrayView file)
{
    if (SetupFiles::importFaults(file, work.mirror())) {
        MessageSink::show(nelib::tr("This file can not be imported."));
        return Result::FileRefused;
    }
    const QByteArray record = SetupFiles::importedRecord(file, work.mirror());
    work.beginImport();
    if (!work.writeWholeRecord(record)) {
        MessageSink::show(nelib::tr("Import Error!"));
        return Result::SendFailed;
    }
    return Result::Sent;
}

SetupTransfer::Result SetupTransfer::factoryDefault(CWork &work, const QString &defaultFile)
{
    const QString path = defaultFile.isEmpty() ? SetupFiles::defaultFilePath() : defaultFile;
    return restoreDefaults(work, SetupFiles::readDefaultFile(path).bytes);
}

SetupTransfer::Result SetupTransfer::restoreDefaults(CWork &work, QByteArrayView image)
{
    const QByteArray record = SetupFiles::defaultRecord(image, work.mirror());
    work.beginDefault();
    if (!work.writeWholeRecord(record)) {
        MessageSink::show(nelib::tr("Default Setup Error!"));
        return Result::SendFailed;
    }
    return Result::Sent;
}
