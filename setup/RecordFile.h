// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

namespace setup {

// A whole setup record read from a file, to be edited without a recorder:
// an export file or a default setup file (DEFDVRSETUP.DAT), told apart by
// their sizes and checked as an import and a factory default check them.
// Nothing short, cut or of another layout is ever taken: what a file lacks
// would reach a recorder later as zeros.
class RecordFile
{
public:
    enum class Kind { Export, Default };
    enum class Problem {
        None,
        Folder,
        Unreadable, // missing, no permission, not a regular file
        Size, // neither an export file's size nor a record's
        Version, // another layout version
        Marks, // the header lacks the marks of its kind
    };

    struct Contents
    {
        Problem problem = Problem::Unreadable;
        Kind kind = Kind::Export;
        QByteArray record; // whole when there is no problem, else empty
        qint64 fileSize = 0;
    };

    static Contents read(const QString &path);
};

} // namespace setup
