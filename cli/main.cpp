#include "cli/RemoteSetupCli.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    cli::RemoteSetupCli cli(out, err);
    return cli.run(app.arguments().mid(1));
}
