// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/record/CRemoteRecordSetupDlg.h"
#include "setup/FactoryDefaults.h"

#include <QComboBox>
#include <QCoreApplication>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

// Switching the Record Setup page to the next record mode of a 16-channel
// recorder until the switch is on screen. Goal: below 10 ms.
static void switchRecordMode(benchmark::State &state)
{
    CRemoteRecordSetupDlg page;
    page.resize(600, 620);
    page.show();
    page.load(setup::FactoryDefaults::record(), 16);
    QCoreApplication::processEvents();
    QComboBox *mode = nullptr;
    for (QComboBox *list : page.findChildren<QComboBox *>()) {
        if (list->accessibleName() == u"Record Mode"_s)
            mode = list;
    }
    if (!mode) {
        state.SkipWithError("no Record Mode list");
        return;
    }
    for (auto _ : state) {
        mode->setCurrentIndex((mode->currentIndex() + 1) % mode->count());
        page.repaint();
        QCoreApplication::processEvents();
    }
}
BENCHMARK(switchRecordMode)->Unit(benchmark::kMillisecond);
