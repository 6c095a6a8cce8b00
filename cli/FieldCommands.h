// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldName.h"
#include "setup/SetupRecordMap.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <set>

namespace cli {

class CliSession;
class CommandContext;

// The commands that read and change single settings by name, and show whole
// setups the way docs/record-layout.md describes ("name = value" lines).
class FieldCommands
{
public:
    // One checked value: one element's bytes, written to every element the
    // name covers.
    struct Assignment
    {
        setup::FieldName name;
        QByteArray bytes;
    };

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
    // diff [--json] [--ignore GLOB]... A [B]: the settings in which two setups
    // differ (B defaults to the recorder); exit 1 when they do. On a fleet,
    // one line per recorder: how many settings differ from A.
    static int diff(const CommandContext &context, const QStringList &arguments);
    // What diff checks before it connects; fleets run it once for all.
    static int checkDiff(const CommandContext &context, const QStringList &arguments);
    // diff on a fleet: "differs: N", N settings of the recorder differing
    // from the one setup given; exit 1 when N is not 0.
    static int drift(const CommandContext &context, const QStringList &arguments);

    // The parts of set that apply shares. One NAME and VALUE checked as set
    // checks them, or nullopt with `error` saying why.
    static std::optional<Assignment> assignment(QStringView name, QStringView value,
                                                QString *error);
    // The page rules that depend on the rest of the record: the message, or
    // nullopt.
    static std::optional<QString> pageRuleError(const QList<Assignment> &assignments,
                                                const QByteArray &record, int channelCount);
    // Sends `sections` of `record` one at a time, each acknowledged before
    // the next. Returns Success, or the exit code with its message printed;
    // `written` gets the keys of the sections the recorder acknowledged.
    static int writeSections(const CommandContext &context, CliSession &session,
                             const QByteArray &record, const std::set<setup::Section> &sections,
                             QStringList *written = nullptr);
};

} // namespace cli
