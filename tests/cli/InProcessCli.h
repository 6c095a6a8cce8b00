// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cli/RemoteSetupCli.h"
#include "tests/TestSupport.h"

#include <QTextStream>

// The command line run in this process, so that a recorder scripted in this
// thread keeps answering while the command waits.
inline testsupport::CliRun runInProcess(const QStringList &arguments)
{
    testsupport::CliRun run;
    {
        QTextStream out(&run.out);
        QTextStream err(&run.err);
        run.exitCode = cli::RemoteSetupCli(out, err).run(arguments);
    }
    return run;
}
