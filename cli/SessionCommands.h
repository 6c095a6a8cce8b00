// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace cli {

class CommandContext;

// The commands that talk to a recorder: each opens one session, does its
// work and ends the session.
class SessionCommands
{
public:
    // info: prints what the recorder reports about itself as key: value lines.
    static int info(const CommandContext &context, const QStringList &arguments);
    // export FILE: writes the recorder's setup to an export file.
    static int exportSetup(const CommandContext &context, const QStringList &arguments);
    // set-time [YYYY-MM-DDThh:mm:ss]: sets the recorder's clock (default: now).
    static int setTime(const CommandContext &context, const QStringList &arguments);
};

} // namespace cli
