// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

// One recorder-sim process serving `count` recorders on 127.0.0.1, and a
// hosts file naming them, for the benchmarks of the command line's fleets.
class BenchFleet
{
public:
    explicit BenchFleet(int count);
    ~BenchFleet();

    // A program of this build, or of the folder RS_BENCH_BIN names (another
    // build, to compare two in one sitting).
    static QString binary(const char *name);

    bool ready() const { return m_ready; }
    QString hostsFile() const { return m_dir.filePath(QStringLiteral("hosts.txt")); }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    // --host and --port of the first recorder.
    QStringList first() const;

private:
    QTemporaryDir m_dir;
    QProcess m_sim;
    QByteArray m_first;
    bool m_ready = false;
};
