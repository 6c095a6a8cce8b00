// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the factory-default setup record to the file named on the command
// line; the build runs it to place DEFDVRSETUP.DAT beside the executables.

#include "setup/FactoryDefaults.h"

#include <QSaveFile>
#include <QString>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-default-setup OUTPUT-FILE\n");
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    const QByteArray record = setup::FactoryDefaults::record();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(record) != record.size() || !file.commit()) {
        std::fprintf(stderr, "make-default-setup: cannot write %s: %s\n", argv[1],
                     qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}
