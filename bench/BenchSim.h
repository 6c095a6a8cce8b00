#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

// A recorder-sim process for benchmarks: a fresh record in a temporary
// folder, a free port on 127.0.0.1.
class BenchSim
{
public:
    explicit BenchSim(const QStringList &extraArguments = {});
    ~BenchSim();

    quint16 port() const { return m_port; }
    QString dir() const { return m_dir.path(); }
    QString recordPath() const { return m_dir.filePath(QStringLiteral("recorder-setup.dat")); }

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
};
