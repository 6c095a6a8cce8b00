// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>

#include <benchmark/benchmark.h>

// Every benchmark runs inside an application object, because the code it
// measures posts events, starts processes or builds widgets. Without a
// display the widgets go to the offscreen platform.
int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
