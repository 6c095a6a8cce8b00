// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/CommandContext.h"

#include "cli/ExitCode.h"

#include <QJsonDocument>

namespace cli {

CommandContext::CommandContext(const GlobalOptions &options, QTextStream &out, QTextStream &err)
    : m_options(options)
    , m_out(out)
    , m_err(err)
{ }

int CommandContext::usageError(const QString &message) const
{
    m_err << "remote-setup-cli: " << message << "\nTry 'remote-setup-cli --help'.\n";
    m_err.flush();
    return UsageError;
}

void CommandContext::printJson(const QJsonObject &object) const
{
    m_out << QJsonDocument(object).toJson(QJsonDocument::Indented);
    m_out.flush();
}

int CommandContext::fail(int code, const QString &message) const
{
    m_err << "remote-setup-cli: " << message << '\n';
    m_err.flush();
    return code;
}

} // namespace cli
