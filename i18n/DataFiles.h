// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace nelib {

// Where the programs find language.config and DEFDVRSETUP.DAT. A build tree
// keeps them beside the executables; an installed or unpacked tree keeps them
// in a data folder relative to the executables (../share/remote-setup), so a
// relocated installation still finds them.
class DataFiles
{
public:
    // The file beside the executable when it is there, else the one in the
    // data folder when that is there, else the path beside the executable
    // (so a message about a missing file names the first place looked at).
    // Needs a QCoreApplication.
    static QString path(const QString &fileName);
};

} // namespace nelib
