#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include "tests/TestSupport.h"

// A recorder-sim process on 127.0.0.1 with a free port and a fresh record
// file in a temporary folder, stopped when the object goes.
class SimProcess
{
public:
    // `initialRecord`, when given, is the recorder's storage at start.
    explicit SimProcess(const QStringList &extraArguments = {},
                        const QByteArray &initialRecord = {});
    ~SimProcess();

    bool isRunning() const { return m_port != 0; }
    quint16 port() const { return m_port; }
    QString recordPath() const { return m_dir.filePath(QStringLiteral("recorder-setup.dat")); }
    QString dirPath() const { return m_dir.path(); }
    // The record as the simulator has stored it.
    QByteArray storedRecord() const;
    void kill();

    // Runs remote-setup-cli against this simulator.
    testsupport::CliRun cli(const QStringList &arguments,
                            const QStringList &globalOptions = {}) const;

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
};
