// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/FleetReport.h"

#include "cli/CommandContext.h"
#include "cli/ExitCode.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QStringTokenizer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

const char *const OutcomeNames[] = {"ok", "refused", "usage error", "no session"};

// `drift`: diff's exit code 1 says the setups differ.
QString outcomeName(int code, bool drift)
{
    if (drift && code == Differs)
        return u"differs"_s;
    return code >= 0 && code < int(std::size(OutcomeNames))
               ? QString::fromLatin1(OutcomeNames[code])
               : u"exit %1"_s.arg(code);
}

// What went wrong, for the result line: the last message of the command.
QString lastMessage(const QString &err)
{
    const QString prefix = u"remote-setup-cli: "_s;
    QStringList lines = err.split(u'\n', Qt::SkipEmptyParts);
    lines.removeIf([](const QString &line) { return line.startsWith(u"Try '"_s); });
    // A progress bar redrawn with carriage returns counts from its last drawing.
    QString message = lines.isEmpty() ? QString() : lines.last().section(u'\r', -1).trimmed();
    if (message.startsWith(prefix))
        message.remove(0, prefix.size());
    return message;
}

} // namespace

FleetReport::FleetReport(const CommandContext &context, int recorders, bool drift)
    : m_context(context)
    , m_results(std::size_t(std::max(0, recorders)))
    , m_drift(drift)
{ }

void FleetReport::finished(int index, const HostEntry &host, int code, const QString &out,
                           const QString &err)
{
    if (index < 0 || std::size_t(index) >= m_results.size())
        return;
    m_results[std::size_t(index)] = Result {host, code, out, err};
    if (!m_context.options().json) {
        printed(*m_results[std::size_t(index)]);
        return;
    }
    while (m_printed < m_results.size() && m_results[m_printed])
        printed(*m_results[m_printed++]);
}

void FleetReport::printed(Result &result)
{
    if (m_context.options().json)
        printJson(result);
    else
        printText(result);
    // The summary needs the host and the outcome; a fleet's outputs kept
    // to the end would grow with every recorder.
    result.out = QString();
    result.err = QString();
}

void FleetReport::printText(const Result &result)
{
    QTextStream &out = m_context.out();
    const QString name = result.host.shown();
    // Views of the output, not copies: a dump is thousands of lines.
    for (const QStringView line : qTokenize(result.out, u'\n', Qt::SkipEmptyParts))
        out << name << ": " << line << '\n';
    // A drift's one line ("differs: 3") is its result.
    if (m_drift && result.code <= Differs && !result.out.isEmpty()) {
        out.flush();
        return;
    }
    out << name << ": " << outcomeName(result.code, m_drift);
    if (result.code != Success) {
        if (const QString message = lastMessage(result.err); !message.isEmpty())
            out << ": " << message;
    }
    out << '\n';
    out.flush();
}

void FleetReport::printJson(const Result &result)
{
    QJsonObject line {{u"host"_s, result.host.address()},
                      {u"label"_s, result.host.label.isEmpty() ? QJsonValue(QJsonValue::Null)
                                                               : QJsonValue(result.host.label)},
                      {u"exit"_s, result.code},
                      {u"outcome"_s, outcomeName(result.code, m_drift)}};
    // The command's own JSON; null when it ended before printing any.
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(result.out.toUtf8(), &parseError);
    line.insert(u"result"_s, parseError.error == QJsonParseError::NoError && document.isObject()
                                 ? QJsonValue(document.object())
                                 : QJsonValue(QJsonValue::Null));
    if (result.code != Success && !(m_drift && result.code == Differs))
        line.insert(u"error"_s, lastMessage(result.err));
    m_context.out() << QJsonDocument(line).toJson(QJsonDocument::Compact) << '\n';
    m_context.out().flush();
}

void FleetReport::printSummary()
{
    QMap<int, QStringList> byOutcome;
    int worst = Success;
    for (const auto &result : m_results) {
        if (!result)
            continue;
        byOutcome[result->code].append(result->host.shown());
        worst = std::max(worst, result->code);
    }
    QTextStream &out = m_context.out();
    if (m_context.options().json) {
        QJsonObject counts;
        for (auto it = byOutcome.cbegin(); it != byOutcome.cend(); ++it)
            counts.insert(outcomeName(it.key(), m_drift), int(it->size()));
        counts.insert(u"total"_s, int(m_results.size()));
        out << QJsonDocument(QJsonObject {{u"summary"_s, counts}, {u"exit"_s, worst}})
                   .toJson(QJsonDocument::Compact)
            << '\n';
        out.flush();
        return;
    }
    out << "summary:\n";
    for (auto it = byOutcome.cbegin(); it != byOutcome.cend(); ++it) {
        out << "  " << outcomeName(it.key(), m_drift).leftJustified(12)
            << QString::number(it->size()).rightJustified(5);
        if (it.key() != Success)
            out << "   " << it->join(u", "_s);
        out << '\n';
    }
    out << "  " << u"total"_s.leftJustified(12)
        << QString::number(m_results.size()).rightJustified(5) << '\n';
    out.flush();
}

} // namespace cli
