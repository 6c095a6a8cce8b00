// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace cli {

class CommandContext;

// apply [--check] [--ignore GLOB]... FILE: brings the recorder to the setup
// FILE describes. FILE holds "name = value" lines as get and dump print
// them ('#' starts a comment) or the JSON of dump --json; every value is
// checked as set checks it before the recorder is contacted. The plan, the
// values that differ as "name = old -> new" and "changed: N", comes first;
// --check stops there. Then each touched section is written once and the
// record read again in a new session: a value the recorder did not keep
// fails the command. A password shown masked leaves the password as it is,
// and so do a dump's lines of bytes no field covers (owner.reserved[a..b]).
class ApplyCommand
{
public:
    static int run(const CommandContext &context, const QStringList &arguments);
    // What apply checks before it connects; fleets run it once for all.
    static int check(const CommandContext &context, const QStringList &arguments);
};

} // namespace cli
