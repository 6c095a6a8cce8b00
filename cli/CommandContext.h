// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cli/GlobalOptions.h"

#include <QJsonObject>
#include <QTextStream>

namespace cli {

// What every command gets: the global options and the two output streams.
// Results go to `out`, messages and progress to `err`, so that scripts can
// pipe the results.
class CommandContext
{
public:
    CommandContext(const GlobalOptions &options, QTextStream &out, QTextStream &err);

    const GlobalOptions &options() const { return m_options; }
    QTextStream &out() const { return m_out; }
    QTextStream &err() const { return m_err; }

    // Prints "remote-setup-cli: <message>" and a hint to --help; returns UsageError.
    int usageError(const QString &message) const;
    // The result of a command run with --json, on `out`.
    void printJson(const QJsonObject &object) const;
    // Prints "remote-setup-cli: <message>" and returns `code`.
    int fail(int code, const QString &message) const;

private:
    const GlobalOptions &m_options;
    QTextStream &m_out;
    QTextStream &m_err;
};

} // namespace cli
