// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/ConnectionRecord.h"

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

class CWork;

// A recorder-sim process for benchmarks: a fresh record in a temporary
// folder, a free port on 127.0.0.1. The program is this build's, or that in
// the folder RS_BENCH_BIN names.
class BenchSim
{
public:
    explicit BenchSim(const QStringList &extraArguments = {});
    ~BenchSim();

    quint16 port() const { return m_port; }
    QString dir() const { return m_dir.path(); }
    QString recordPath() const { return m_dir.filePath(QStringLiteral("recorder-setup.dat")); }

    // Logs `work` in as Admin and waits for the setup record and the clock;
    // `record` must outlive the session.
    bool openSession(CWork &work, ConnectionRecord &record) const;

    // Runs the event loop until `done` holds, looking every few
    // milliseconds: the loop sleeps in between, so what is measured has the
    // processor to itself.
    static bool runUntil(const std::function<bool()> &done, int timeoutMs);

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
};
