// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace cli {

class CommandContext;

// The commands that send a whole setup to a recorder. Each reads its input
// file before it connects, so a wrong path costs no session, and succeeds
// only once the recorder has acknowledged the six blocks and the commit.
class SetupFileCommands
{
public:
    // import FILE: checks an export file against the recorder and sends it.
    static int importSetup(const CommandContext &context, const QStringList &arguments);
    // factory-default [--default-file F]: restores the recorder's defaults
    // from DEFDVRSETUP.DAT beside the executable, or from F.
    static int factoryDefault(const CommandContext &context, const QStringList &arguments);
};

} // namespace cli
