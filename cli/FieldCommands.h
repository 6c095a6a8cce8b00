// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace cli {

class CommandContext;

// The commands that read and change single settings by name, and show whole
// setups the way docs/record-layout.md describes ("name = value" lines).
class FieldCommands
{
public:
    // get [--json] NAME...: the named sections, fields or elements of the
    // recorder's setup.
    static int get(const CommandContext &context, const QStringList &arguments);
    // What get checks before it connects.
    static int checkGet(const CommandContext &context, const QStringList &arguments);
    // set NAME=VALUE...: checks every value, then writes each touched
    // section once; success only when the recorder acknowledged every write.
    static int set(const CommandContext &context, const QStringList &arguments);
    // What set checks before it connects; fleets run it once for all.
    static int checkSet(const CommandContext &context, const QStringList &arguments);
    // dump [--json] [FILE]: the recorder's setup, or that of an export file,
    // a default setup file or a recorder named @HOST[:PORT].
    static int dump(const CommandContext &context, const QStringList &arguments);
    // diff [--json] A B: the settings in which two setups differ.
    static int diff(const CommandContext &context, const QStringList &arguments);
};

} // namespace cli
