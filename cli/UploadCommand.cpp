// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/UploadCommand.h"

#include "cli/CliSession.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/UploadProgress.h"
#include "firmware/FirmwarePackage.h"
#include "firmware/FirmwareUploader.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;
using firmware::FirmwarePackage;
using firmware::FirmwareUploader;

namespace cli {

namespace {

// The uploader has already printed the system's message where there is one.
int exitCodeOf(const CommandContext &context, FirmwareUploader::Outcome outcome)
{
    using Outcome = FirmwareUploader::Outcome;
    switch (outcome) {
    case Outcome::Completed:
        return Success;
    case Outcome::Busy:
    case Outcome::Refused:
        return cli::Refused;
    case Outcome::Declined:
        return context.fail(cli::Refused, u"the recorder declined the update"_s);
    case Outcome::Canceled:
        return context.fail(cli::Refused, u"the upload was canceled"_s);
    case Outcome::NoResponse:
    case Outcome::SendFailed:
        return NoSession;
    case Outcome::ReadFailed:
    case Outcome::SizeIncorrect:
        return UsageError;
    }
    return NoSession;
}

// upload's arguments, the package checked: Success, or the exit code with
// its message printed. A broken package is refused before any recorder
// hears of it.
int parseArguments(const CommandContext &context, const QStringList &arguments,
                   std::optional<FirmwarePackage> *package, int *deadlineSeconds)
{
    QCommandLineParser parser;
    const QCommandLineOption deadlineOption(u"deadline"_s, QString(), u"S"_s);
    parser.addOption(deadlineOption);
    if (!parser.parse(QStringList {u"upload"_s} + arguments))
        return context.usageError(u"upload: "_s + parser.errorText());
    if (parser.positionalArguments().size() != 1)
        return context.usageError(u"upload takes one PACKAGE"_s);
    *deadlineSeconds = UploadCommand::DefaultDeadlineSeconds;
    if (parser.isSet(deadlineOption)) {
        bool ok = false;
        *deadlineSeconds = parser.value(deadlineOption).toInt(&ok);
        if (!ok || *deadlineSeconds < 1 || *deadlineSeconds > UploadCommand::MaxDeadlineSeconds)
            return context.usageError(
                u"--deadline must be a whole number of seconds from 1 to %1, not '%2'"_s.arg(
                    QString::number(UploadCommand::MaxDeadlineSeconds),
                    parser.value(deadlineOption)));
    }
    const QString path = parser.positionalArguments().first();
    FirmwarePackage::Fault fault = FirmwarePackage::Fault::None;
    *package = FirmwarePackage::open(path, &fault);
    if (!*package)
        return context.fail(fault == FirmwarePackage::Fault::Unreadable ? UsageError : cli::Refused,
                            u"%1: %2"_s.arg(path, FirmwarePackage::faultMessage(fault)));
    return Success;
}

} // namespace

int UploadCommand::check(const CommandContext &context, const QStringList &arguments)
{
    std::optional<FirmwarePackage> package;
    int deadlineSeconds = 0;
    return parseArguments(context, arguments, &package, &deadlineSeconds);
}

int UploadCommand::run(const CommandContext &context, const QStringList &arguments)
{
    std::optional<FirmwarePackage> package;
    int deadlineSeconds = 0;
    if (const int code = parseArguments(context, arguments, &package, &deadlineSeconds))
        return code;

    CliSession session(context);
    if (const int code = session.open())
        return code;

    UploadProgress progress(context.err(), isatty(fileno(stderr)) != 0);
    MessageSink::install(&progress);
    auto uploader = std::make_unique<FirmwareUploader>(session.worker(), std::move(*package));
    // The pause between packets is the recorder's; how long to wait for each
    // reply is ours, and --timeout may shorten it.
    uploader->setWaits(FirmwareUploader::PacketPause,
                       std::min<std::chrono::milliseconds>(
                           FirmwareUploader::ReplyTimeout,
                           std::chrono::seconds(context.options().timeoutSeconds)));
    // Success is claimed only for what the recorder said it took.
    uploader->requireExactAcceptance();
    QObject::connect(uploader.get(), &FirmwareUploader::percentageChanged, &session,
                     [&progress](int percent) { progress.setPercentage(percent); });
    QObject::connect(uploader.get(), &FirmwareUploader::finished, &session, &CliSession::wake);
    progress.setPercentage(0);
    uploader->start();
    session.await([&uploader] { return uploader->outcome().has_value(); },
                  std::chrono::seconds(deadlineSeconds));
    const std::optional<FirmwareUploader::Outcome> outcome = uploader->outcome();
    // Destroying an unfinished upload tells the recorder to stop.
    uploader.reset();
    MessageSink::install(&session);
    const QString where = u"%1:%2"_s.arg(context.options().host).arg(context.options().port);
    if (!outcome) {
        progress.endBarLine();
        return context.fail(NoSession,
                            u"the upload to %1 did not finish within %2 s (--deadline); the "
                            u"recorder was told to stop"_s.arg(where)
                                .arg(deadlineSeconds));
    }
    if (const QString text = FirmwareUploader::message(*outcome); !text.isEmpty())
        progress.showMessage(text);
    if (*outcome == FirmwareUploader::Outcome::SendFailed && session.connectionLost())
        return context.fail(NoSession, u"%1 closed the connection during the upload"_s.arg(where));
    return exitCodeOf(context, *outcome);
}

} // namespace cli
