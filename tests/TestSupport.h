// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace testsupport {

// The folder the build puts executables, language.config and DEFDVRSETUP.DAT in.
QString dataDir();
// The source tree, for tests that read shipped files.
QString sourceDir();

QByteArray readFile(const QString &path);

// A factory-default record whose bytes from `from` on depend on `seed`, so
// that records of different seeds differ wherever a copy could go wrong.
// Starting after the accounts (216) keeps "Admin" able to log in.
QByteArray patternedRecord(int seed, qsizetype from = 216);

// `record` with what a recorder keeps through an import or a factory default
// put back from `recorder`: the header, block F (13,876, 276 bytes) and, when
// `monitor`, the monitor settings (684, 16 bytes). The offsets are written
// out here on purpose, apart from the code under test.
QByteArray keepingRecordersOwn(QByteArray record, const QByteArray &recorder, bool monitor);

// A finished remote-setup-cli run.
struct CliRun
{
    int exitCode = -1;
    QString out;
    QString err;
};
CliRun runCli(const QStringList &arguments);

// Runs the event loop until `done` holds or `timeoutMs` passed; returns `done()`.
bool waitFor(const std::function<bool()> &done, int timeoutMs = 10000);
void writeFile(const QString &path, const QByteArray &bytes);

// A loopback listener whose queue of connections waiting to be accepted is
// full, so that a further connection attempt hangs: the kernel drops its
// handshake instead of refusing it.
class HangingListener
{
public:
    HangingListener();
    ~HangingListener();
    HangingListener(const HangingListener &) = delete;
    HangingListener &operator=(const HangingListener &) = delete;

    quint16 port() const { return m_port; }

private:
    int m_listener = -1;
    std::vector<int> m_queued;
    quint16 m_port = 0;
};

// Collects the warnings Qt's message handler receives while it lives.
class WarningCapture
{
public:
    WarningCapture();
    ~WarningCapture();
    QStringList messages;
};

} // namespace testsupport

#include <ostream>

// Readable failure messages for Qt's string types.
void PrintTo(const QString &s, std::ostream *os);
void PrintTo(const QByteArray &b, std::ostream *os);
