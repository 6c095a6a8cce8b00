// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/RemoteSetupCli.h"

#include "BuildInfo.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>

int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("remote-setup-cli " RS_VERSION);
        return 0;
    }
    // The one event loop of the command line needs no GLib main context;
    // Qt's own dispatcher costs less per turn, and a fleet takes thousands.
    if (!qEnvironmentVariableIsSet("QT_NO_GLIB"))
        qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    cli::RemoteSetupCli cli(out, err);
    return cli.run(app.arguments().mid(1));
}
