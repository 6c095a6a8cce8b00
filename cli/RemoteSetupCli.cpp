// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/RemoteSetupCli.h"

#include "cli/ApplyCommand.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/FieldCommands.h"
#include "cli/Fleet.h"
#include "cli/GlobalOptions.h"
#include "cli/InputFile.h"
#include "cli/SessionCommands.h"
#include "cli/SetupFileCommands.h"
#include "cli/TranslateCommand.h"
#include "cli/UploadCommand.h"

#include <QJsonArray>
#include <QLatin1StringView>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

using Run = int (*)(const CommandContext &, const QStringList &);

int envelope(Run run, const CommandContext &context, const QStringList &arguments)
{
    QString text;
    int code = Success;
    {
        QTextStream out(&text);
        const CommandContext captured(context.options(), out, context.err());
        code = run(captured, arguments);
    }
    QJsonArray lines;
    for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts))
        lines.append(line);
    // A command that failed before saying anything has no result, as with the others.
    if (code == Success || !lines.isEmpty())
        context.printJson({{u"output"_s, lines}});
    return code;
}

// A plain function, so that a fleet runs it like any command.
template<Run R>
int enveloped(const CommandContext &context, const QStringList &arguments)
{
    return envelope(R, context, arguments);
}

} // namespace

const RemoteSetupCli::Command RemoteSetupCli::s_commands[] = {
    {"info", "info", "print what the recorder reports about itself", &SessionCommands::info},
    {"export", "export FILE", "write the recorder's setup to an export file",
     &SessionCommands::exportSetup, false, &enveloped<&SessionCommands::exportSetup>},
    {"import", "import FILE", "check an export file against the recorder and send it",
     &SetupFileCommands::importSetup, true, &enveloped<&SetupFileCommands::importSetup>},
    {"factory-default", "factory-default [--default-file F]",
     "restore the factory defaults (the installed DEFDVRSETUP.DAT unless F is given)",
     &SetupFileCommands::factoryDefault, false, &enveloped<&SetupFileCommands::factoryDefault>},
    {"upload", "upload [--deadline S] PACKAGE",
     "send a firmware update package (.KRP) to the recorder; give up after S seconds in all "
     "(default 3600)",
     &UploadCommand::run, true, &enveloped<&UploadCommand::run>},
    {"set-time", "set-time [YYYY-MM-DDThh:mm:ss]",
     "set the recorder's clock (default: this computer's local time)", &SessionCommands::setTime},
    {"get", "get [--json] NAME...",
     "print settings by name (a section, a field or one element: camera.title[2])",
     &FieldCommands::get},
    {"set", "set NAME=VALUE...",
     "change settings by name; every value is checked before the recorder is contacted",
     &FieldCommands::set},
    {"dump", "dump [--json] [FILE]",
     "print every setting of the recorder or of FILE (an export file, DEFDVRSETUP.DAT, "
     "@HOST[:PORT])",
     &FieldCommands::dump},
    {"apply", "apply [--check] [--ignore GLOB]... FILE",
     "bring the recorder to the settings of FILE (get or dump lines, or dump --json): print\n"
     "      each change as 'name = old -> new' and 'changed: N', then (unless --check) write\n"
     "      them and read them back; ******** leaves a password as it is",
     &ApplyCommand::run},
    {"diff", "diff [--json] [--ignore GLOB]... FILE1 [FILE2]",
     "print the settings in which two setups differ (each a file or @HOST[:PORT]; the\n"
     "      recorder when FILE2 is left out); exit 1 when they differ. With --hosts:\n"
     "      'differs: N' per recorder against FILE1",
     &FieldCommands::diff},
    {"translate", "translate [--config F] --language N [--escapes] TEXT...",
     "print each text's translation, one a line", &TranslateCommand::run, false,
     &enveloped<&TranslateCommand::run>},
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
    auto options = GlobalOptions::parse(arguments, &rest, &error, &help);
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
        if (name != QLatin1StringView(command.name))
            continue;
        // --json is every command's; after the command it reads as before it.
        if (rest.removeAll(u"--json"_s) > 0)
            options->json = true;
        const Run run = options->json && command.runJson ? command.runJson : command.run;
        for (qsizetype k = 0; command.readsFiles && k < rest.size(); ++k) {
            if (const auto refusal = InputFile::refusal(rest[k]))
                return context.fail(UsageError, *refusal);
        }
        if (!options->hostsFile.isEmpty())
            return Fleet::run(context, name, rest, run);
        return run(context, rest);
    }
    return context.usageError(u"unknown command '%1'"_s.arg(name));
}

void RemoteSetupCli::printUsage(QTextStream &stream) const
{
    stream << "usage: remote-setup-cli [--host H] [--port P] [--user ID] [--password-file F]"
              " [--timeout S]\n       [--hosts FILE [--jobs N]] [--json] [--show-secrets] COMMAND "
              "...\n\n"
              "Options (defaults 127.0.0.1, 9000, Admin, no password, 30 s, 8 jobs):\n"
              "  --host H           the recorder's host name or IPv4 address\n"
              "  --port P           its port\n"
              "  --user ID          the account to log in with\n"
              "  --password-file F  read the password from the first line of F\n"
              "                     (else from $REMOTE_SETUP_PASSWORD)\n"
              "  --timeout S        give up on the recorder after S seconds\n"
              "  --hosts FILE       run the command on every recorder of FILE, one\n"
              "                     'host[:port] [user] [label=TEXT]\n"
              "                     [password-file=PATH | password-env=NAME]' a line\n"
              "                     (--port and --user are the defaults); export then\n"
              "                     takes a folder DIR/\n"
              "  --jobs N           with --hosts, talk to at most N recorders at once\n"
              "  --json             print results as JSON, values typed (with --hosts one\n"
              "                     object a line per recorder, then a summary object)\n"
              "  --show-secrets     print passwords (the accounts' and the e-mail one) as\n"
              "                     they are; otherwise get, dump, diff, set and apply\n"
              "                     show them as ********\n"
              "  --version          print the program's version and exit\n\n"
              "Commands:\n";
    for (const Command &command : s_commands)
        stream << "  " << command.synopsis << "\n      " << command.summary << '\n';
    stream << "\nChecked before any recorder is contacted: every argument, every line of the\n"
              "hosts file (addresses, duplicates, user ids), user id and password (length and\n"
              "code page), values against their fields' ranges, and input files, which must\n"
              "be regular files (a FIFO, a folder or a device is refused); an import file, a\n"
              "--default-file or a package that is not what it should be is refused with\n"
              "nothing sent. Export files are written readable by their owner only.\n"
              "\n--ignore GLOB leaves out the settings it names ('*' any characters, '?' one):\n"
              "stream.ip-address, users.*, camera.title[2].\n"
              "\nExit codes: 0 success, 1 refused (diff: the setups differ), 2 usage error or\n"
              "unreadable input file, 3 no session.\n";
}

} // namespace cli
