// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/TestSupport.h"

#include "setup/FactoryDefaults.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace testsupport {

HangingListener::HangingListener()
{
    m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (m_listener < 0 || ::bind(m_listener, reinterpret_cast<sockaddr *>(&address), length) != 0
        || ::listen(m_listener, 0) != 0
        || ::getsockname(m_listener, reinterpret_cast<sockaddr *>(&address), &length) != 0)
        return;
    m_port = ntohs(address.sin_port);
    // A backlog of 0 holds one connection; two more are sure to fill it.
    for (int i = 0; i < 2; ++i) {
        const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
        ::connect(fd, reinterpret_cast<sockaddr *>(&address), length);
        m_queued.push_back(fd);
    }
}

HangingListener::~HangingListener()
{
    for (const int fd : m_queued)
        ::close(fd);
    if (m_listener >= 0)
        ::close(m_listener);
}

QString dataDir()
{
    return QStringLiteral(RS_DATA_DIR);
}

QString sourceDir()
{
    return QStringLiteral(RS_SOURCE_DIR);
}

QByteArray readFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "cannot read " << path.toStdString();
        return {};
    }
    return f.readAll();
}

QByteArray patternedRecord(int seed, qsizetype from)
{
    QByteArray record = setup::FactoryDefaults::record();
    for (qsizetype i = from; i < record.size(); ++i)
        record[i] = char((i * 31 + seed * 17) % 251 + 1);
    return record;
}

QByteArray keepingRecordersOwn(QByteArray record, const QByteArray &recorder, bool monitor)
{
    constexpr qsizetype HeaderSize = 32;
    constexpr qsizetype BlockF = 13876;
    constexpr qsizetype BlockFLength = 276;
    constexpr qsizetype Monitor = 684;
    constexpr qsizetype MonitorLength = 16;
    record.replace(0, HeaderSize, recorder.first(HeaderSize));
    record.replace(BlockF, BlockFLength, recorder.sliced(BlockF, BlockFLength));
    if (monitor)
        record.replace(Monitor, MonitorLength, recorder.sliced(Monitor, MonitorLength));
    return record;
}

CliRun runCli(const QStringList &arguments)
{
    QProcess process;
    process.start(dataDir() + QStringLiteral("/remote-setup-cli"), arguments);
    EXPECT_TRUE(process.waitForFinished(60000));
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

bool waitFor(const std::function<bool()> &done, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        ADD_FAILURE() << "cannot write " << path.toStdString();
}

namespace {
QStringList *s_capturing = nullptr;
QtMessageHandler s_previousHandler = nullptr;
} // namespace

WarningCapture::WarningCapture()
{
    s_capturing = &messages;
    s_previousHandler
        = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) {
              s_capturing->append(message);
          });
}

WarningCapture::~WarningCapture()
{
    qInstallMessageHandler(s_previousHandler);
    s_capturing = nullptr;
}

} // namespace testsupport

void PrintTo(const QString &s, std::ostream *os)
{
    *os << '"' << s.toStdString() << '"';
}

void PrintTo(const QByteArray &b, std::ostream *os)
{
    *os << "QByteArray(" << b.size() << " bytes: " << b.left(64).toHex(' ').toStdString()
        << (b.size() > 64 ? " ...)" : ")");
}
