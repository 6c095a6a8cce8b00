// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

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

    // "host:port" ("[::1]:9000" for IPv6): how results and file names name it.
    QString label() const;
};

// The list of recorders that --hosts names: one "host[:port] [user]" a line,
// IPv6 addresses in brackets when a port follows, "#" starting a comment,
// blank lines ignored.
class HostsFile
{
public:
    // Every recorder, or nullopt with one message per bad line in `errors`
    // ("FILE:LINE: ..."); duplicates and an empty list are errors too.
    static std::optional<QList<HostEntry>> read(const QString &path, quint16 defaultPort,
                                                QStringList *errors);
    static std::optional<QList<HostEntry>> parse(QStringView text, const QString &name,
                                                 quint16 defaultPort, QStringList *errors);
    // "host[:port]", "[v6]:port" or a bare IPv6 address.
    static std::optional<HostEntry> parseAddress(QStringView text, quint16 defaultPort,
                                                 QString *error);
};

} // namespace cli
