// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/HostsFile.h"

#include "cli/InputFile.h"
#include "cli/LoginFields.h"
#include "session/ConnectionRecord.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QHostAddress>
#include <QRegularExpression>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

// Far more than any fleet; a bigger file is not a hosts file.
constexpr qint64 MaxFileBytes = 4 * 1024 * 1024;

// One spelling per recorder: 127.000.000.001 and 127.0.0.1, or ::1 and
// 0:0::1, are the same address; host names compare without case.
QString duplicateKey(const HostEntry &entry)
{
    const QHostAddress address(entry.host);
    const QString host = address.isNull() ? entry.host.toLower() : address.toString();
    return host + u'/' + QString::number(entry.port);
}

// The words of a line; a double-quoted stretch keeps its spaces.
std::optional<QStringList> words(QStringView line, QString *error)
{
    QStringList list;
    QString word;
    bool inWord = false;
    bool quoted = false;
    for (const QChar c : line) {
        if (c == u'"') {
            quoted = !quoted;
            inWord = true;
        } else if (c.isSpace() && !quoted) {
            if (inWord)
                list.append(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quoted) {
        *error = u"a double quote is not closed"_s;
        return std::nullopt;
    }
    if (inWord)
        list.append(word);
    return list;
}

// Longer labels would only crowd the result lines.
constexpr int MaxLabel = 64;

// What a line may say besides its address; nullopt when it is fine.
std::optional<QString> takeSetting(HostEntry *entry, const QString &word, const QString &hostsPath)
{
    static const QRegularExpression envName(u"^[A-Za-z_][A-Za-z0-9_]*$"_s);
    const qsizetype equals = word.indexOf(u'=');
    const QString key = word.left(equals);
    const QString value = word.mid(equals + 1);
    if (key == u"label"_s) {
        if (value.isEmpty() || value.size() > MaxLabel)
            return u"a label has 1 to %1 characters"_s.arg(MaxLabel);
        entry->label = value;
    } else if (key == u"user"_s) {
        entry->user = value;
    } else if (key == u"password-file"_s || key == u"password-env"_s) {
        if (!entry->passwordFile.isEmpty() || !entry->passwordEnv.isEmpty())
            return u"a line names one password-file or password-env"_s;
        if (value.isEmpty())
            return u"%1 needs a value"_s.arg(key);
        if (key == u"password-env"_s && !envName.match(value).hasMatch())
            return u"'%1' is not the name of an environment variable"_s.arg(value);
        if (key == u"password-env"_s)
            entry->passwordEnv = value;
        else
            entry->passwordFile = QFileInfo(hostsPath).dir().filePath(value);
    } else {
        return u"unknown setting '%1' (label, user, password-file or password-env)"_s.arg(key);
    }
    return std::nullopt;
}

// A password file that others may read is no secret: refuse it as ssh does.
std::optional<QString> exposure(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0 || !(status.st_mode & 077))
        return std::nullopt;
    return u"password file %1 may be read by others (mode %2); chmod 600 it"_s.arg(path).arg(
        status.st_mode & 0777, 4, 8, QChar(u'0'));
}

} // namespace

QString HostEntry::address() const
{
    const QString name = host.contains(u':') ? u'[' + host + u']' : host;
    return name + u':' + QString::number(port);
}

QString HostEntry::shown() const
{
    return label.isEmpty() ? address() : address() + u" ("_s + label + u')';
}

GlobalOptions HostEntry::options(const GlobalOptions &base) const
{
    GlobalOptions options = base;
    options.host = host;
    options.port = port;
    if (!user.isEmpty())
        options.user = user;
    if (!passwordFile.isEmpty())
        options.passwordFile = passwordFile;
    if (!passwordEnv.isEmpty()) {
        options.passwordFile.clear();
        options.passwordEnv = passwordEnv;
    }
    return options;
}

std::optional<HostEntry> HostsFile::parseAddress(QStringView text, quint16 defaultPort,
                                                 QString *error)
{
    static const QRegularExpression bracketed(u"^\\[([0-9A-Fa-f:.]+)\\](?::(\\d{1,5}))?$"_s);
    static const QRegularExpression plain(u"^([A-Za-z0-9._-]+)(?::(\\d{1,5}))?$"_s);
    static const QRegularExpression bareV6(u"^([0-9A-Fa-f]*:[0-9A-Fa-f:.]*)$"_s);
    const QString s = text.toString();
    QRegularExpressionMatch match = bracketed.match(s);
    if (!match.hasMatch())
        match = plain.match(s);
    if (!match.hasMatch())
        match = bareV6.match(s);
    if (!match.hasMatch()) {
        *error = u"'%1' is not a host name or address with an optional :port"_s.arg(text);
        return std::nullopt;
    }
    HostEntry entry;
    entry.host = match.captured(1);
    entry.port = defaultPort;
    if (entry.host.size() >= ConnectionRecord::AddressSize) {
        *error = u"host name '%1' is longer than %2 characters"_s.arg(entry.host)
                     .arg(ConnectionRecord::AddressSize - 1);
        return std::nullopt;
    }
    if (match.lastCapturedIndex() >= 2 && match.hasCaptured(2)) {
        const uint port = match.captured(2).toUInt();
        if (port < 1 || port > 65535) {
            *error = u"port %1 is not from 1 to 65535"_s.arg(match.captured(2));
            return std::nullopt;
        }
        entry.port = quint16(port);
    }
    return entry;
}

std::optional<QList<HostEntry>> HostsFile::parse(QStringView text, const QString &name,
                                                 quint16 defaultPort, QStringList *errors)
{
    QList<HostEntry> entries = goodLines(text, name, defaultPort, errors);
    if (!errors->isEmpty())
        return std::nullopt;
    return entries;
}

QList<HostEntry> HostsFile::goodLines(QStringView text, const QString &name, quint16 defaultPort,
                                      QStringList *errors)
{
    QList<HostEntry> entries;
    QHash<QString, int> seen;
    const auto lines = text.split(u'\n');
    for (qsizetype n = 0; n < lines.size(); ++n) {
        const int lineNumber = int(n) + 1;
        auto report = [&](const QString &message) {
            errors->append(u"%1:%2: %3"_s.arg(name).arg(lineNumber).arg(message));
        };
        QStringView line = lines[n];
        if (const qsizetype hash = line.indexOf(u'#'); hash >= 0)
            line = line.left(hash);
        QString error;
        const auto fields = words(line, &error);
        if (!fields) {
            report(error);
            continue;
        }
        if (fields->isEmpty())
            continue;
        auto entry = parseAddress(fields->first(), defaultPort, &error);
        if (!entry) {
            report(error);
            continue;
        }
        entry->line = lineNumber;
        std::optional<QString> refusal;
        for (qsizetype k = 1; k < fields->size() && !refusal; ++k) {
            const QString &word = fields->at(k);
            if (word.contains(u'='))
                refusal = takeSetting(&*entry, word, name);
            else if (k == 1)
                entry->user = word;
            else
                refusal = u"expected 'host[:port] [user] [label=TEXT] [password-file=PATH | "
                          u"password-env=NAME]', found '%1'"_s.arg(word);
        }
        if (!refusal && !entry->user.isEmpty() && !LoginFields::memberIdOf(entry->user, &error))
            refusal = error;
        if (refusal) {
            report(*refusal);
            continue;
        }
        const QString key = duplicateKey(*entry);
        if (const auto first = seen.constFind(key); first != seen.cend()) {
            report(u"%1 is already listed on line %2"_s.arg(entry->address()).arg(*first));
            continue;
        }
        seen.insert(key, lineNumber);
        entries.append(*entry);
    }
    if (errors->isEmpty() && entries.isEmpty())
        errors->append(u"%1 lists no recorders"_s.arg(name));
    return entries;
}

std::optional<QList<HostEntry>> HostsFile::read(const GlobalOptions &options, QStringList *errors)
{
    const QString &path = options.hostsFile;
    if (const auto refusal = InputFile::refusal(path)) {
        errors->append(u"hosts file "_s + *refusal);
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        errors->append(u"cannot read hosts file %1: %2"_s.arg(path, file.errorString()));
        return std::nullopt;
    }
    const QByteArray bytes = file.read(MaxFileBytes + 1);
    if (bytes.size() > MaxFileBytes) {
        errors->append(u"%1 is larger than %2 bytes"_s.arg(path).arg(MaxFileBytes));
        return std::nullopt;
    }
    const QList<HostEntry> entries
        = goodLines(QString::fromUtf8(bytes), path, options.port, errors);
    // Every login is checked here, so that a bad one stops the fleet before it starts.
    for (const HostEntry &entry : entries) {
        QString error;
        const auto refusal
            = entry.passwordFile.isEmpty() ? std::nullopt : exposure(entry.passwordFile);
        if (refusal || !LoginFields::from(entry.options(options), &error))
            errors->append(u"%1:%2: %3"_s.arg(path).arg(entry.line).arg(refusal.value_or(error)));
    }
    if (!errors->isEmpty())
        return std::nullopt;
    return entries;
}

} // namespace cli
