// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>
#include <QTextStream>

namespace cli {

class CommandContext;

// The headless front of the client: global options, then one command.
class RemoteSetupCli
{
public:
    RemoteSetupCli(QTextStream &out, QTextStream &err);

    // `arguments` excludes the program name. Returns the process exit code.
    int run(const QStringList &arguments);

private:
    struct Command
    {
        const char *name;
        const char *synopsis;
        const char *summary;
        int (*run)(const CommandContext &, const QStringList &);
        // Every argument is an input file, checked before the command runs.
        bool readsFiles = false;
        // With --json, for a command that prints no JSON of its own: its
        // output lines as {"output": [...]}. Null: run prints its own.
        int (*runJson)(const CommandContext &, const QStringList &) = nullptr;
    };
    static const Command s_commands[];

    void printUsage(QTextStream &stream) const;

    QTextStream &m_out;
    QTextStream &m_err;
};

} // namespace cli
