// SPDX-License-Identifier: GPL-3.0-or-later

#include <QCoreApplication>

#include <gtest/gtest.h>

// Tests that use Qt's event loop, files beside the executable or
// QCoreApplication::applicationDirPath() need an application object.
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
