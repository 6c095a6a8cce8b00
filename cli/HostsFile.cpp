// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/HostsFile.h"

#include "cli/InputFile.h"
#include "cli/LoginFields.h"
#include "session/ConnectionRecord.h"

#include <QFile>
#include <QHash>
#include <QHostAddress>
#include <QRegularExpression>

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

} // namespace

QString HostEntry::label() const
{
    const QString name = host.contains(u':') ? u'[' + host + u']' : host;
    return name + u':' + QString::number(port);
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
        static const QRegularExpression space(u"\\s+"_s);
        const QStringList fields = line.toString().split(space, Qt::SkipEmptyParts);
        if (fields.isEmpty())
            continue;
        if (fields.size() > 2) {
            report(u"expected 'host[:port] [user]', found %1 words"_s.arg(fields.size()));
            continue;
        }
        QString error;
        auto entry = parseAddress(fields[0], defaultPort, &error);
        if (!entry) {
            report(error);
            continue;
        }
        entry->line = lineNumber;
        if (fields.size() == 2) {
            if (!LoginFields::memberIdOf(fields[1], &error)) {
                report(error);
                continue;
            }
            entry->user = fields[1];
        }
        const QString key = duplicateKey(*entry);
        if (const auto first = seen.constFind(key); first != seen.cend()) {
            report(u"%1 is already listed on line %2"_s.arg(entry->label()).arg(*first));
            continue;
        }
        seen.insert(key, lineNumber);
        entries.append(*entry);
    }
    if (errors->isEmpty() && entries.isEmpty())
        errors->append(u"%1 lists no recorders"_s.arg(name));
    if (!errors->isEmpty())
        return std::nullopt;
    return entries;
}

std::optional<QList<HostEntry>> HostsFile::read(const QString &path, quint16 defaultPort,
                                                QStringList *errors)
{
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
    return parse(QString::fromUtf8(bytes), path, defaultPort, errors);
}

} // namespace cli
