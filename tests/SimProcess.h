// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include "tests/TestSupport.h"

// A recorder-sim process on 127.0.0.1 with a free port and a fresh record
// file in a temporary folder, stopped when the object goes. With `fleet`,
// it serves that many recorders, each with a record file of its own.
class SimProcess
{
public:
    // `initialRecord`, when given, is the recorder's storage at start.
    explicit SimProcess(const QStringList &extraArguments = {},
                        const QByteArray &initialRecord = {}, int fleet = 0);
    ~SimProcess();

    bool isRunning() const { return !m_ports.isEmpty(); }
    quint16 port() const { return isRunning() ? m_ports.first() : 0; }
    // Of every recorder, in the order of their record files.
    const QList<quint16> &ports() const { return m_ports; }
    QString recordPath() const { return m_dir.filePath(QStringLiteral("recorder-setup.dat")); }
    QString dirPath() const { return m_dir.path(); }
    // The record as the simulator has stored it; in a fleet, recorder `k`'s.
    QByteArray storedRecord(int k = -1) const;
    void kill();

    // Runs remote-setup-cli against this simulator.
    testsupport::CliRun cli(const QStringList &arguments,
                            const QStringList &globalOptions = {}) const;

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    QList<quint16> m_ports;
};
