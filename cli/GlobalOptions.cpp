// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/GlobalOptions.h"

#include "cli/InputFile.h"

#include <QCommandLineParser>
#include <QFile>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

std::optional<int> boundedNumber(const QString &text, int low, int high)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < low || value > high)
        return std::nullopt;
    return value;
}

} // namespace

std::optional<GlobalOptions> GlobalOptions::parse(const QStringList &arguments, QStringList *rest,
                                                  QString *error, bool *helpRequested)
{
    QCommandLineParser parser;
    // Everything from the command on belongs to the command.
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption host(u"host"_s, QString(), u"H"_s);
    const QCommandLineOption port(u"port"_s, QString(), u"P"_s);
    const QCommandLineOption user(u"user"_s, QString(), u"ID"_s);
    const QCommandLineOption passwordFile(u"password-file"_s, QString(), u"F"_s);
    const QCommandLineOption timeout(u"timeout"_s, QString(), u"S"_s);
    const QCommandLineOption hosts(u"hosts"_s, QString(), u"FILE"_s);
    const QCommandLineOption jobs(u"jobs"_s, QString(), u"N"_s);
    const QCommandLineOption showSecrets(u"show-secrets"_s);
    const QCommandLineOption json(u"json"_s);
    const QCommandLineOption help(QStringList {u"h"_s, u"help"_s});
    parser.addOptions(
        {host, port, user, passwordFile, timeout, hosts, jobs, showSecrets, json, help});

    if (!parser.parse(QStringList {u"remote-setup-cli"_s} + arguments)) {
        *error = parser.errorText();
        return std::nullopt;
    }
    *helpRequested = parser.isSet(help);

    GlobalOptions options;
    if (parser.isSet(host))
        options.host = parser.value(host);
    if (options.host.isEmpty()) {
        *error = u"--host needs a host name or address"_s;
        return std::nullopt;
    }
    if (parser.isSet(port)) {
        const auto value = boundedNumber(parser.value(port), 1, 65535);
        if (!value) {
            *error = u"--port must be a number from 1 to 65535, not '%1'"_s.arg(parser.value(port));
            return std::nullopt;
        }
        options.port = quint16(*value);
    }
    if (parser.isSet(user))
        options.user = parser.value(user);
    if (parser.isSet(passwordFile))
        options.passwordFile = parser.value(passwordFile);
    if (parser.isSet(timeout)) {
        const auto value = boundedNumber(parser.value(timeout), 1, 24 * 3600);
        if (!value) {
            *error = u"--timeout must be a whole number of seconds from 1 to 86400, not '%1'"_s.arg(
                parser.value(timeout));
            return std::nullopt;
        }
        options.timeoutSeconds = *value;
    }
    if (parser.isSet(hosts)) {
        if (parser.isSet(host)) {
            *error = u"--host and --hosts exclude each other"_s;
            return std::nullopt;
        }
        options.hostsFile = parser.value(hosts);
    }
    if (parser.isSet(jobs)) {
        const auto value = boundedNumber(parser.value(jobs), 1, MaxJobs);
        if (!value) {
            *error = u"--jobs must be a number from 1 to %1, not '%2'"_s.arg(MaxJobs).arg(
                parser.value(jobs));
            return std::nullopt;
        }
        options.jobs = *value;
    }
    options.showSecrets = parser.isSet(showSecrets);
    options.json = parser.isSet(json);
    *rest = parser.positionalArguments();
    return options;
}

std::optional<QString> GlobalOptions::password(QString *error) const
{
    if (passwordFile.isEmpty()) {
        const QByteArray name = passwordEnv.toLatin1();
        if (!qEnvironmentVariableIsSet(name.constData())
            && passwordEnv != QLatin1StringView(DefaultPasswordEnv)) {
            *error = u"the environment variable %1 is not set"_s.arg(passwordEnv);
            return std::nullopt;
        }
        return qEnvironmentVariable(name.constData());
    }
    if (const auto refusal = InputFile::refusal(passwordFile)) {
        *error = u"password file "_s + *refusal;
        return std::nullopt;
    }
    QFile file(passwordFile);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = u"cannot read password file %1: %2"_s.arg(passwordFile, file.errorString());
        return std::nullopt;
    }
    // A file without line ends must not hold the command up.
    QByteArray line = file.readLine(MaxPasswordLine + 2);
    const bool ended = line.endsWith('\n') || file.atEnd();
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    if (!ended || line.size() > MaxPasswordLine) {
        *error = u"the first line of password file %1 is longer than %2 bytes"_s.arg(passwordFile)
                     .arg(MaxPasswordLine);
        return std::nullopt;
    }
    return QString::fromUtf8(line);
}

} // namespace cli
