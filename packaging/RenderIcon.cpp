// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the program's icon as PNG files for the desktop's icon theme:
// render-icon DIR NAME SIZE... writes DIR/SIZExSIZE/apps/NAME.png.

#include "app/WindowIcon.h"

#include <QDir>
#include <QString>

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    if (argc < 4) {
        std::fprintf(stderr, "usage: render-icon DIR NAME SIZE...\n");
        return 2;
    }
    const QDir root(QString::fromLocal8Bit(argv[1]));
    const QString name = QString::fromLocal8Bit(argv[2]);
    for (int i = 3; i < argc; ++i) {
        const int size = std::atoi(argv[i]);
        const QString folder = QStringLiteral("%1x%1/apps").arg(size);
        const QString path = root.filePath(folder + u'/' + name + QStringLiteral(".png"));
        if (size <= 0 || !root.mkpath(folder) || !WindowIcon::image(size).save(path)) {
            std::fprintf(stderr, "render-icon: cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
