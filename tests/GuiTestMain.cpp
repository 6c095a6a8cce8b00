// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>

#include <gtest/gtest.h>

// Widget tests run on Qt's offscreen platform, so they need no display and
// behave the same on every machine. It is chosen here rather than by CTest
// alone, because CTest also starts the programs to list their tests.
int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
