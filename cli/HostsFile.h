// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cli/GlobalOptions.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace cli {

// One recorder of a fleet.
struct HostEntry
{
    QString host;
    quint16 port = 0;
    QString user; // empty: the --user of the command line
    int line = 0; // in the hosts file, from 1
    // A name for people ("Shop Nord"), shown with every result; may be empty.
    QString label;
    // Where this recorder's password comes from instead of the command
    // line's: a private file, or an environment variable. At most one is set.
    QString passwordFile;
    QString passwordEnv;

    // "host:port" ("[::1]:9000" for IPv6): how file names name it.
    QString address() const;
    // How result lines name it: the address, then the label in parentheses.
    QString shown() const;
    // The command line's options with this recorder's address and login.
    GlobalOptions options(const GlobalOptions &base) const;
};

// The list of recorders that --hosts names, one a line:
//
//     host[:port] [user] [label=TEXT] [password-file=PATH | password-env=NAME]
//
// IPv6 addresses in brackets when a port follows, a value with spaces in
// double quotes (label="Shop Nord"), "#" starting a comment, blank lines
// ignored. A password file is named relative to the hosts file and must be
// a regular file that neither its group nor others may read; a password
// variable must be set. Passwords themselves never stand in the file.
class HostsFile
{
public:
    // Every recorder, or nullopt with one message per bad line in `errors`
    // ("FILE:LINE: ..."); duplicates, an empty list and a login a recorder
    // could not be sent (user id, password) are errors too.
    static std::optional<QList<HostEntry>> read(const GlobalOptions &options, QStringList *errors);
    // The lines of `text`; `name` is the file's path, which relative password
    // files are resolved against.
    static std::optional<QList<HostEntry>> parse(QStringView text, const QString &name,
                                                 quint16 defaultPort, QStringList *errors);
    // "host[:port]", "[v6]:port" or a bare IPv6 address.
    static std::optional<HostEntry> parseAddress(QStringView text, quint16 defaultPort,
                                                 QString *error);

private:
    // The lines that are fine; a message in `errors` for each that is not.
    static QList<HostEntry> goodLines(QStringView text, const QString &name, quint16 defaultPort,
                                      QStringList *errors);
};

} // namespace cli
