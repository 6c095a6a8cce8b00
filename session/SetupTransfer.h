// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>
#include <QString>

class CWork;

// Whole setups through a session: the Configuration page's Export, Import
// and Factory Default, one call per button, and the same for the command
// line. Each call shows its own messages through the MessageSink. Import and
// factory default only start the transfer: the recorder's acknowledgements
// finish it in the worker, which then reports success or failure to the
// main window (SessionNotice) and, on success, tells it to reload (3029).
class SetupTransfer
{
public:
    enum class Result {
        Sent, // the whole record is on its way; the acknowledgements follow
        FileMissing, // "File does not exist"; nothing changed
        FileRefused, // "This file can not be imported."; nothing changed
        SendFailed, // "Import Error!" or "Default Setup Error!"
        // The next two also show "Import Error!" or "Default Setup Error!"
        // and send nothing.
        NoRecord, // no whole record was received from the recorder
        Busy, // another whole-record write is still running
    };

    // Writes the export file of the worker's record to `path`. Returns
    // whether it was written; "Export completed" is shown either way.
    static bool exportFile(const CWork &work, const QString &path);

    // Reads, checks and sends an export file.
    static Result importFile(CWork &work, const QString &path);
    // Checks and sends the bytes of an export file already read.
    static Result importData(CWork &work, QByteArrayView file);

    // Restores the defaults from DEFDVRSETUP.DAT beside the executable, or
    // from `defaultFile`. A missing or short file is sent as far as it goes,
    // zeros for the rest, without a word.
    static Result factoryDefault(CWork &work, const QString &defaultFile = QString());
    // Restores the defaults from the bytes of a default image already read.
    static Result restoreDefaults(CWork &work, QByteArrayView image);
};
