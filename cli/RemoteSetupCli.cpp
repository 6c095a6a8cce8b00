#include "cli/RemoteSetupCli.h"

#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/GlobalOptions.h"
#include "cli/SessionCommands.h"
#include "cli/SetupFileCommands.h"
#include "cli/TranslateCommand.h"
#include "cli/UploadCommand.h"

#include <QLatin1StringView>

using namespace Qt::StringLiterals;

namespace cli {

const RemoteSetupCli::Command RemoteSetupCli::s_commands[] = {
    {"info", "info", "print what the recorder reports about itself", &SessionCommands::info},
    {"export", "export FILE", "write the recorder's setup to an export file",
     &SessionCommands::exportSetup},
    {"import", "import FILE", "check an export file against the recorder and send it",
     &SetupFileCommands::importSetup},
    {"factory-default", "factory-default [--default-file F]",
     "restore the factory defaults (the installed DEFDVRSETUP.DAT unless F is given)",
     &SetupFileCommands::factoryDefault},
    {"upload", "upload PACKAGE", "send a firmware update package (.KRP) to the recorder",
     &UploadCommand::run},
    {"set-time", "set-time [YYYY-MM-DDThh:mm:ss]",
     "set the recorder's clock (default: this computer's local time)", &SessionCommands::setTime},
    {"translate", "translate [--config F] --language N [--escapes] TEXT...",
     "print each text's translation, one a line", &TranslateCommand::run},
};

RemoteSetupCli::RemoteSetupCli(QTextStream &out, QTextStream &err)
    : m_out(out)
    , m_err(err)
{ }

int RemoteSetupCli::run(const QStringList &arguments)
{
    QStringList rest;
    QString error;
    bool help = false;
    const auto options = GlobalOptions::parse(arguments, &rest, &error, &help);
    const GlobalOptions defaults;
    const CommandContext context(options ? *options : defaults, m_out, m_err);
    if (!options)
        return context.usageError(error);
    if (help) {
        printUsage(m_out);
        m_out.flush();
        return Success;
    }
    if (rest.isEmpty()) {
        printUsage(m_err);
        m_err.flush();
        return UsageError;
    }

    const QString name = rest.takeFirst();
    for (const Command &command : s_commands) {
        if (name == QLatin1StringView(command.name))
            return command.run(context, rest);
    }
    return context.usageError(u"unknown command '%1'"_s.arg(name));
}

void RemoteSetupCli::printUsage(QTextStream &stream) const
{
    stream << "usage: remote-setup-cli [--host H] [--port P] [--user ID] [--password-file F]"
              " [--timeout S] COMMAND ...\n\n"
              "Options (defaults 127.0.0.1, 9000, Admin, no password, 30 s):\n"
              "  --host H           the recorder's host name or IPv4 address\n"
              "  --port P           its port\n"
              "  --user ID          the account to log in with\n"
              "  --password-file F  read the password from the first line of F\n"
              "                     (else from $REMOTE_SETUP_PASSWORD)\n"
              "  --timeout S        give up on the recorder after S seconds\n"
              "  --version          print the program's version and exit\n\n"
              "Commands:\n";
    for (const Command &command : s_commands)
        stream << "  " << command.synopsis << "\n      " << command.summary << '\n';
    stream << "\nExit codes: 0 success, 1 refused, 2 usage error or unreadable input file,"
              " 3 no session.\n";
}

} // namespace cli
