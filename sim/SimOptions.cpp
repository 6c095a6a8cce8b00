// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/SimOptions.h"

#include <QCommandLineParser>
#include <QFile>

#include <limits>

using namespace Qt::StringLiterals;

namespace sim {

namespace {

// The Admin slot of the users section holds 12 bytes.
constexpr qsizetype PasswordWidth = 12;
constexpr int MaxCount = 1000;
constexpr int MaxThreads = 64;

// Decimal, or hexadecimal after "0x" when `hexAllowed`.
std::optional<qint64> boundedNumber(const QString &text, qint64 low, qint64 high,
                                    bool hexAllowed = false)
{
    bool ok = false;
    const bool hex = hexAllowed && text.startsWith(u"0x"_s, Qt::CaseInsensitive);
    const qint64 value = hex ? text.mid(2).toLongLong(&ok, 16) : text.toLongLong(&ok, 10);
    if (!ok || value < low || value > high)
        return std::nullopt;
    return value;
}

std::optional<SimOptions::Version> parseVersion(const QString &text)
{
    const QStringList parts = text.split(u'.');
    if (parts.size() != 4)
        return std::nullopt;
    SimOptions::Version version {};
    for (std::size_t i = 0; i < version.size(); ++i) {
        const auto part = boundedNumber(parts.at(qsizetype(i)), 0, 255);
        if (!part)
            return std::nullopt;
        version[i] = quint8(*part);
    }
    return version;
}

// "127.0.0.1:9000", "[::1]:9000" or "localhost:9000".
bool parseListen(const QString &text, QHostAddress *address, quint16 *port)
{
    const qsizetype colon = text.lastIndexOf(u':');
    if (colon <= 0)
        return false;
    QString host = text.left(colon);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    const auto number = boundedNumber(text.mid(colon + 1), 0, 65535);
    if (!number)
        return false;
    if (host.compare(u"localhost"_s, Qt::CaseInsensitive) == 0)
        *address = QHostAddress(QHostAddress::LocalHost);
    else if (!address->setAddress(host))
        return false;
    *port = quint16(*number);
    return true;
}

std::optional<QByteArray> readPassword(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = u"cannot read --admin-password-file %1: %2"_s.arg(path, file.errorString());
        return std::nullopt;
    }
    QByteArray line = file.readLine();
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    if (line.size() > PasswordWidth) {
        *error = u"the password in %1 is longer than %2 bytes"_s.arg(path).arg(PasswordWidth);
        return std::nullopt;
    }
    return line;
}

} // namespace

std::optional<SimOptions> SimOptions::parse(const QStringList &arguments, QString *error,
                                            bool *helpRequested)
{
    QCommandLineParser parser;
    const QCommandLineOption listen(u"listen"_s, QString(), u"HOST:PORT"_s);
    const QCommandLineOption record(u"record"_s, QString(), u"FILE"_s);
    const QCommandLineOption channels(u"channels"_s, QString(), u"N"_s);
    const QCommandLineOption video(u"video"_s, QString(), u"ntsc|pal"_s);
    const QCommandLineOption maxUsers(u"max-users"_s, QString(), u"N"_s);
    const QCommandLineOption version(u"version"_s, QString(), u"a.b.c.d"_s);
    const QCommandLineOption model(u"model"_s, QString(), u"N"_s);
    const QCommandLineOption chunkSize(u"chunk-size"_s, QString(), u"N"_s);
    const QCommandLineOption adminPassword(u"admin-password-file"_s, QString(), u"F"_s);
    const QCommandLineOption firmwareDir(u"firmware-dir"_s, QString(), u"DIR"_s);
    const QCommandLineOption refuseLogin(u"refuse-login"_s, QString(), u"CODE"_s);
    const QCommandLineOption busy(u"busy"_s);
    const QCommandLineOption dropAfter(u"drop-after"_s, QString(), u"N"_s);
    const QCommandLineOption delayMs(u"delay-ms"_s, QString(), u"N"_s);
    const QCommandLineOption count(u"count"_s, QString(), u"N"_s);
    const QCommandLineOption maxConnections(u"max-connections"_s, QString(), u"N"_s);
    const QCommandLineOption loginTimeout(u"login-timeout"_s, QString(), u"S"_s);
    const QCommandLineOption keepAliveTimeout(u"keep-alive-timeout"_s, QString(), u"S"_s);
    const QCommandLineOption refuseWriteAt(u"refuse-write-at"_s, QString(), u"N"_s);
    const QCommandLineOption threads(u"threads"_s, QString(), u"N"_s);
    const QCommandLineOption help(QStringList {u"h"_s, u"help"_s});
    parser.addOptions(
        {listen,        record,    channels,      video,          maxUsers,     version,
         model,         chunkSize, adminPassword, firmwareDir,    refuseLogin,  busy,
         dropAfter,     delayMs,   count,         maxConnections, loginTimeout, keepAliveTimeout,
         refuseWriteAt, threads,   help});

    if (!parser.parse(QStringList {u"recorder-sim"_s} + arguments)) {
        *error = parser.errorText();
        return std::nullopt;
    }
    if (!parser.positionalArguments().isEmpty()) {
        *error = u"unexpected argument '%1'"_s.arg(parser.positionalArguments().first());
        return std::nullopt;
    }
    *helpRequested = parser.isSet(help);

    SimOptions options;
    // Each numeric option: its bounds, where it goes (times `scale`), and
    // how to say what it takes.
    struct Number
    {
        const QCommandLineOption &option;
        qint64 low;
        qint64 high;
        int *target;
        int scale = 1;
    };
    constexpr int Ms = 1000;
    const Number numbers[] = {
        {channels, 1, 16, &options.channels},
        {maxUsers, 1, 1024, &options.maxUsers},
        {chunkSize, 1, 1024 * 1024, &options.chunkSize},
        {dropAfter, 1, std::numeric_limits<int>::max(), &options.dropAfter},
        {delayMs, 0, 600000, &options.delayMs},
        {count, 1, MaxCount, &options.count},
        {maxConnections, 1, 65536, &options.maxConnections},
        {loginTimeout, 1, 3600, &options.loginTimeoutMs, Ms},
        {keepAliveTimeout, 1, 3600, &options.keepAliveTimeoutMs, Ms},
        {refuseWriteAt, 1, std::numeric_limits<int>::max(), &options.refuseWriteAt},
        {threads, 1, MaxThreads, &options.threads},
    };
    for (const Number &n : numbers) {
        if (!parser.isSet(n.option))
            continue;
        const QString text = parser.value(n.option);
        const auto value = boundedNumber(text, n.low, n.high);
        if (!value) {
            *error = u"--%1 must be a number from %2 to %3, not '%4'"_s.arg(
                n.option.names().first(), QString::number(n.low), QString::number(n.high), text);
            return std::nullopt;
        }
        *n.target = int(*value) * n.scale;
    }
    options.countGiven = parser.isSet(count);

    if (parser.isSet(listen)
        && !parseListen(parser.value(listen), &options.address, &options.port)) {
        *error = u"--listen takes HOST:PORT with an IP address or localhost and a port from 0 "
                 u"to 65535, not '%1'"_s.arg(parser.value(listen));
        return std::nullopt;
    }
    if (options.port != 0 && options.port + options.count - 1 > 65535) {
        *error = u"--count %1 recorders from port %2 run past port 65535"_s.arg(options.count)
                     .arg(options.port);
        return std::nullopt;
    }
    if (parser.isSet(record))
        options.recordFile = parser.value(record);
    if (options.recordFile.isEmpty()) {
        *error = u"--record needs a file name"_s;
        return std::nullopt;
    }
    if (parser.isSet(video)) {
        const QString text = parser.value(video).toLower();
        if (text != u"ntsc"_s && text != u"pal"_s) {
            *error = u"--video must be ntsc or pal, not '%1'"_s.arg(parser.value(video));
            return std::nullopt;
        }
        options.videoStandard = text == u"pal"_s ? 1 : 0;
    }
    if (parser.isSet(version)) {
        options.softwareVersion = parseVersion(parser.value(version));
        if (!options.softwareVersion) {
            *error = u"--version takes four numbers from 0 to 255 as a.b.c.d, not '%1'"_s.arg(
                parser.value(version));
            return std::nullopt;
        }
    }
    if (parser.isSet(model)) {
        const auto value = boundedNumber(parser.value(model), 0, 0xFFFFFFFFll, true);
        if (!value) {
            *error = u"--model must be a 32-bit number (decimal or 0x hex), not '%1'"_s.arg(
                parser.value(model));
            return std::nullopt;
        }
        options.modelId = quint32(*value);
    }
    if (parser.isSet(refuseLogin)) {
        const auto value = boundedNumber(parser.value(refuseLogin), 0, 0xFFFFFFFFll);
        if (!value) {
            *error = u"--refuse-login must be a 32-bit number, not '%1'"_s.arg(
                parser.value(refuseLogin));
            return std::nullopt;
        }
        options.refuseLoginCode = quint32(*value);
    }
    if (parser.isSet(adminPassword)) {
        options.adminPassword = readPassword(parser.value(adminPassword), error);
        if (!options.adminPassword)
            return std::nullopt;
    }
    if (parser.isSet(firmwareDir))
        options.firmwareDir = parser.value(firmwareDir);
    options.busy = parser.isSet(busy);
    return options;
}

QString SimOptions::usage()
{
    return u"usage: recorder-sim [--listen HOST:PORT] [--record FILE] [--channels N]\n"
           u"                    [--video ntsc|pal] [--max-users N] [--version a.b.c.d]\n"
           u"                    [--model N] [--chunk-size N] [--admin-password-file F]\n"
           u"                    [--firmware-dir DIR] [--refuse-login CODE] [--busy]\n"
           u"                    [--max-connections N] [--login-timeout S]\n"
           u"                    [--keep-alive-timeout S] [--drop-after N] [--delay-ms N]\n"
           u"                    [--refuse-write-at N] [--count N] [--threads N]\n"
           u"\n"
           u"A recorder for the Remote Setup client. Prints 'listening on HOST:PORT' once per\n"
           u"recorder on standard output, everything else on standard error.\n"
           u"  --listen HOST:PORT   address to listen on (127.0.0.1:9000; port 0: any free port)\n"
           u"  --record FILE        setup record storage (recorder-setup.dat), created when "
           u"missing\n"
           u"  --channels N         camera channels, 1-16 (16)\n"
           u"  --video ntsc|pal     video standard (ntsc)\n"
           u"  --max-users N        sessions logged in at once (4)\n"
           u"  --version a.b.c.d    software version of a new record; alone: print the\n"
           u"                       program's version and exit\n"
           u"  --model N            model id of a new record\n"
           u"  --chunk-size N       firmware chunk size (65536)\n"
           u"  --admin-password-file F  Admin password of a new record (first line)\n"
           u"  --firmware-dir DIR   where received firmware packages are written\n"
           u"  --max-connections N  connections at once; the oldest one not logged in\n"
           u"                       makes way for a new one (256)\n"
           u"  --login-timeout S    close a connection not logged in after S seconds (5)\n"
           u"  --keep-alive-timeout S  close a session silent for S seconds (15)\n"
           u"  --refuse-login CODE  answer every login with CODE\n"
           u"  --busy               report firmware updates as busy\n"
           u"  --drop-after N       close each connection after N received frames\n"
           u"  --delay-ms N         delay every answer by N milliseconds\n"
           u"  --refuse-write-at N  refuse the N-th setup write of each connection\n"
           u"  --count N            N recorders (up to 1000) on consecutive ports, files\n"
           u"                       FILE.0 ... FILE.N-1\n"
           u"  --threads N          threads serving the connections, 1-64 (one per processor,\n"
           u"                       at least two)\n"_s;
}

QString SimOptions::recordFileFor(int index) const
{
    return countGiven ? recordFile + u'.' + QString::number(index) : recordFile;
}

quint16 SimOptions::portFor(int index) const
{
    return port == 0 ? 0 : quint16(port + index);
}

} // namespace sim
