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
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    cli::RemoteSetupCli cli(out, err);
    return cli.run(app.arguments().mid(1));
}
