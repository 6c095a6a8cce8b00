// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/SetupFileCommands.h"

#include "cli/CliSession.h"
#include "cli/CommandContext.h"
#include "cli/ExitCode.h"
#include "cli/InputFile.h"
#include "i18n/Translator.h"
#include "session/SetupTransfer.h"
#include "setup/ExportFile.h"
#include "setup/LittleEndian.h"
#include "setup/SetupFiles.h"
#include "setup/SetupRecordMap.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <functional>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using setup::ExportFile;
using setup::SetupFiles;
using setup::SetupRecordMap;

namespace cli {

namespace {

// Starts the transfer and waits for its seventh acknowledgement, which
// clears the worker's pending flag. The first refused write ends the
// session there: no later block, no commit, no success message.
int transfer(const CommandContext &context, CliSession &session,
             const std::function<SetupTransfer::Result(CWork &)> &start,
             bool (CWork::*pending)() const)
{
    CWork &work = session.worker();
    session.stopAtRefusal();
    switch (start(work)) {
    case SetupTransfer::Result::Sent:
        break;
    case SetupTransfer::Result::FileMissing:
        return UsageError;
    case SetupTransfer::Result::FileRefused:
        return Refused;
    case SetupTransfer::Result::SendFailed:
        return context.fail(NoSession, u"the session ended before the whole setup was sent"_s);
    case SetupTransfer::Result::NoRecord:
        return context.fail(NoSession, u"no whole setup record was received"_s);
    case SetupTransfer::Result::Busy:
        return context.fail(Refused, u"another whole-setup transfer is running"_s);
    }
    const int code
        = session.waitUntil([&] { return session.refusedAcknowledgement() || !(work.*pending)(); },
                            u"acknowledgement of the whole setup"_s);
    const int refused = session.refusedAcknowledgement();
    if (refused == 0) {
        if (code == Success && work.lastTransferOutcome() != CWork::TransferOutcome::Succeeded)
            return context.fail(NoSession, u"the session ended before the whole setup was sent"_s);
        return code;
    }
    const auto &blocks = SetupRecordMap::Blocks;
    const QString what = refused <= int(blocks.size())
                             ? u"block %1 of %2 (%3)"_s.arg(refused)
                                   .arg(blocks.size())
                                   .arg(QLatin1StringView(blocks[std::size_t(refused - 1)].name))
                             : u"the commit"_s;
    return context.fail(
        Refused,
        u"the recorder refused %1; nothing more was sent and nothing was committed"_s.arg(what));
}

// The first thing that makes `image` no default setup file, or empty.
QString defaultFault(const SetupFiles::FileContents &image)
{
    const SetupFiles::DefaultFaults faults = SetupFiles::defaultFaults(image);
    if (faults & SetupFiles::DefaultFault::Size)
        return u"it is %1 bytes, not %2"_s.arg(image.fileSize).arg(SetupRecordMap::RecordSize);
    if (faults & SetupFiles::DefaultFault::Version)
        return u"its layout version is 0x%1, not 0x%2"_s.arg(
            QString::number(LittleEndian::u32(image.bytes, SetupRecordMap::LayoutVersionOffset), 16)
                .rightJustified(8, u'0'),
            QString::number(SetupRecordMap::LayoutVersion, 16).rightJustified(8, u'0'));
    if (faults & SetupFiles::DefaultFault::Marks)
        return u"its header lacks the record size and channel-record count of one"_s;
    return {};
}

} // namespace

int SetupFileCommands::importSetup(const CommandContext &context, const QStringList &arguments)
{
    if (arguments.size() != 1)
        return context.usageError(u"import takes one FILE"_s);
    const QString &path = arguments.first();
    const SetupFiles::FileContents file = SetupFiles::readImportFile(path);
    if (file.status == SetupFiles::FileStatus::Missing)
        return context.fail(UsageError, u"%1: %2"_s.arg(path, nelib::tr("File does not exist")));
    if (file.status == SetupFiles::FileStatus::Unreadable)
        return context.fail(UsageError, u"cannot read %1"_s.arg(path));
    // What a cut file lacks would reach the recorder as zeros: camera
    // titles, user rights. Unlike the window, a script is never asked.
    const qint64 size = QFileInfo(path).size();
    if (size != ExportFile::Size)
        return context.fail(Refused,
                            u"%1 is %2 bytes, but an export file is %3 bytes; nothing sent"_s.arg(
                                path, QString::number(size), QString::number(ExportFile::Size)));

    CliSession session(context);
    if (const int code = session.open())
        return code;
    return transfer(
        context, session,
        [&file](CWork &work) { return SetupTransfer::importData(work, file.bytes); },
        &CWork::importPending);
}

int SetupFileCommands::factoryDefault(const CommandContext &context, const QStringList &arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption defaultFile(u"default-file"_s, QString(), u"F"_s);
    parser.addOption(defaultFile);
    if (!parser.parse(QStringList {u"factory-default"_s} + arguments))
        return context.usageError(u"factory-default: "_s + parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return context.usageError(u"factory-default takes no arguments besides --default-file F"_s);

    // The installed file is taken as the window takes it, except that a
    // script is told of a short one; a file named on the command line must
    // be a default setup file, for anything else would wipe the recorder
    // (an all-0xFF file locks the Admin out).
    const bool named = parser.isSet(defaultFile);
    const QString path = named ? parser.value(defaultFile) : SetupFiles::defaultFilePath();
    if (const auto refusal = InputFile::refusal(path))
        return context.fail(UsageError, *refusal);
    const SetupFiles::FileContents image = SetupFiles::readDefaultFile(path);
    if (image.status != SetupFiles::FileStatus::Read)
        return context.fail(UsageError, u"cannot read default file %1"_s.arg(path));
    if (named) {
        if (const QString fault = defaultFault(image); !fault.isEmpty())
            return context.fail(
                Refused, u"%1 is not a default setup file: %2; nothing sent"_s.arg(path, fault));
    } else if (image.bytesRead < image.bytes.size()) {
        context.err() << "remote-setup-cli: " << path << " holds " << image.bytesRead << " of "
                      << image.bytes.size() << " bytes; the rest is sent as zeros\n";
        context.err().flush();
    }

    CliSession session(context);
    if (const int code = session.open())
        return code;
    return transfer(
        context, session,
        [&image](CWork &work) { return SetupTransfer::restoreDefaults(work, image.bytes); },
        &CWork::defaultPending);
}

} // namespace cli
