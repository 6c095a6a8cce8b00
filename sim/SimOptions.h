// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

namespace sim {

// The command line of recorder-sim. Every value is checked here, so the
// recorders can trust what they are given.
class SimOptions
{
public:
    using Version = std::array<quint8, 4>; // a, b, c, d

    QHostAddress address {QHostAddress::LocalHost};
    quint16 port = 9000; // 0: each recorder picks a free port
    QString recordFile = QStringLiteral("recorder-setup.dat");
    int channels = 16;
    quint8 videoStandard = 0; // 0 NTSC, 1 PAL, as the login answer carries it
    int maxUsers = 4;
    // Identity and Admin password of a record that has to be created; an
    // existing record keeps its own.
    std::optional<Version> softwareVersion;
    std::optional<quint32> modelId;
    std::optional<QByteArray> adminPassword;
    int chunkSize = 65536;
    QString firmwareDir;

    // Protection against clients that misbehave or guess passwords.
    int maxConnections = 256;
    int loginTimeoutMs = 5000; // from the connection to a successful login
    int keepAliveTimeoutMs = 15000; // a logged-in session's longest silence
    // Not on the command line: answers a connection may leave unread before
    // its input stops, and how long it may stay so before it is dropped.
    qint64 maxUnsentBytes = 1024 * 1024;
    int stallTimeoutMs = 10000;
    bool slowFailedLogins = true;

    // Fault switches.
    std::optional<quint32> refuseLoginCode;
    bool busy = false;
    int dropAfter = 0; // frames received before the connection is closed; 0: never
    int refuseWriteAt = 0; // the setup write of each connection refused; 0: none
    int delayMs = 0;
    int count = 1;
    bool countGiven = false;
    int threads = 0; // that serve the connections; 0: one per processor, at least two

    // Parses the arguments after the program name. On failure `error` says
    // what was wrong. --help sets `helpRequested` and succeeds.
    static std::optional<SimOptions> parse(const QStringList &arguments, QString *error,
                                           bool *helpRequested);
    static QString usage();

    // The storage file and port of recorder `index` of `count`. A fixed port
    // is counted up; port 0 stays 0, so every recorder picks its own.
    QString recordFileFor(int index) const;
    quint16 portFor(int index) const;
};

} // namespace sim
