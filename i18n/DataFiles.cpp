// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/DataFiles.h"

#include "BuildInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace nelib {

QString DataFiles::path(const QString &fileName)
{
    const QDir programDir(QCoreApplication::applicationDirPath());
    const QString beside = programDir.filePath(fileName);
    if (QFileInfo::exists(beside))
        return beside;
    const QString installed
        = QDir::cleanPath(programDir.filePath(QStringLiteral(RS_DATA_SUBDIR "/") + fileName));
    return QFileInfo::exists(installed) ? installed : beside;
}

} // namespace nelib
