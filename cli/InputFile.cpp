// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/InputFile.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace cli {

std::optional<QString> InputFile::refusal(const QString &path)
{
    struct stat info = {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0 || S_ISREG(info.st_mode))
        return std::nullopt;
    QString kind = u"not a regular file"_s;
    if (S_ISDIR(info.st_mode))
        kind = u"a folder, not a file"_s;
    else if (S_ISFIFO(info.st_mode))
        kind = u"a FIFO, not a regular file"_s;
    else if (S_ISCHR(info.st_mode) || S_ISBLK(info.st_mode))
        kind = u"a device, not a regular file"_s;
    return u"%1 is %2"_s.arg(path, kind);
}

} // namespace cli
