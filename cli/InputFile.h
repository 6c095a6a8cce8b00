// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace cli {

// The one check every file the command line reads passes before it is
// opened: a FIFO or a device would hold the command up for ever, a folder
// has nothing to read. A path that does not exist passes; opening it then
// fails with the caller's own message.
class InputFile
{
public:
    // "PATH is a FIFO, not a regular file" and the like; nullopt when the
    // path is a regular file (or a link to one) or does not exist.
    static std::optional<QString> refusal(const QString &path);
};

} // namespace cli
