// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/UploadCommand.h"

#include "cli/CliSession.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/UploadProgress.h"
#include "firmware/FirmwarePackage.h"
#include "firmware/FirmwareUploader.h"

#include <QEventLoop>

#include <algorithm>
#include <cstdio>
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

} // namespace

int UploadCommand::run(const CommandContext &context, const QStringList &arguments)
{
    if (arguments.size() != 1)
        return context.usageError(u"upload takes one PACKAGE"_s);
    const QString path = arguments.first();
    // A broken package is refused before any recorder hears of it.
    FirmwarePackage::Fault fault = FirmwarePackage::Fault::None;
    std::optional<FirmwarePackage> package = FirmwarePackage::open(path, &fault);
    if (!package)
        return context.fail(fault == FirmwarePackage::Fault::Unreadable ? UsageError : cli::Refused,
                            u"%1: %2"_s.arg(path, FirmwarePackage::faultMessage(fault)));

    CliSession session(context);
    if (const int code = session.open())
        return code;

    UploadProgress progress(context.err(), isatty(fileno(stderr)) != 0);
    MessageSink::install(&progress);
    FirmwareUploader uploader(session.worker(), std::move(*package));
    // The pause between packets is the recorder's; how long to wait for each
    // reply is ours, and --timeout may shorten it.
    uploader.setWaits(FirmwareUploader::PacketPause,
                      std::min<std::chrono::milliseconds>(
                          FirmwareUploader::ReplyTimeout,
                          std::chrono::seconds(context.options().timeoutSeconds)));
    QEventLoop loop;
    QObject::connect(&uploader, &FirmwareUploader::percentageChanged, &loop,
                     [&progress](int percent) { progress.setPercentage(percent); });
    QObject::connect(&uploader, &FirmwareUploader::finished, &loop, &QEventLoop::quit);
    progress.setPercentage(0);
    uploader.start();
    loop.exec();
    if (const QString text = FirmwareUploader::message(*uploader.outcome()); !text.isEmpty())
        progress.showMessage(text);
    MessageSink::install(&session);
    return exitCodeOf(context, *uploader.outcome());
}

} // namespace cli
