// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/PackageBuilder.h"
#include "firmware/FirmwarePackage.h"
#include "tests/TestSupport.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

using namespace Qt::StringLiterals;
using firmware::FirmwarePackage;
using firmware::FirmwareVersion;
using firmware::PackageBuilder;

// The package the tool writes, as FirmwarePackage reads it back.
TEST(PackageBuilder, ToolWritesTheComponentsItIsGiven)
{
    QTemporaryDir dir;
    const QString source = dir.filePath(u"image.bin"_s);
    testsupport::writeFile(source, QByteArray(5000, 'i'));
    const QString out = dir.filePath(u"tool.KRP"_s);
    QProcess tool;
    tool.start(testsupport::dataDir() + u"/make-krp-package"_s,
               {out, u"--version"_s, u"4.3.2.1"_s, u"--data-offset"_s, u"4096"_s, u"--component"_s,
                u"0x20000:4.0.0.0:2K"_s, u"--component"_s, u"2:4.0.0.1:"_s + source,
                u"--component"_s, u"8:4.0.0.0:300K"_s});
    ASSERT_TRUE(tool.waitForFinished(60000));
    ASSERT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();

    FirmwarePackage::Fault fault = FirmwarePackage::Fault::Unreadable;
    const auto package = FirmwarePackage::open(out, &fault);
    ASSERT_TRUE(package);
    EXPECT_EQ(fault, FirmwarePackage::Fault::None);
    const QByteArray file = testsupport::readFile(out);
    EXPECT_EQ(package->header(), file.first(FirmwarePackage::HeaderSize));
    EXPECT_EQ(package->version(), (FirmwareVersion {{4, 3, 2, 1}}));
    EXPECT_EQ(package->dataOffset(), 4096u);
    EXPECT_EQ(package->fileSize(), 4096 + 2048 + 5000 + 300 * 1024);
    ASSERT_EQ(package->components().size(), 3u);
    const FirmwarePackage::Component &first = package->components()[0];
    const FirmwarePackage::Component &second = package->components()[1];
    EXPECT_EQ(std::tie(first.type, first.version, first.size, first.offset),
              std::tuple(0x20000u, FirmwareVersion {{4, 0, 0, 0}}, 2048u, 4096));
    EXPECT_EQ(std::tie(second.type, second.version),
              std::tuple(2u, FirmwareVersion {{4, 0, 0, 1}}));
    EXPECT_EQ(file.sliced(second.offset, second.size), QByteArray(5000, 'i'));
    // Generated data, streamed in blocks, are not constant, and differ
    // between components.
    const QByteArray generated = file.sliced(4096, 2048);
    EXPECT_NE(generated, file.last(2048));
    EXPECT_GT(std::set<char>(generated.begin(), generated.end()).size(), 200u);

    for (const QStringList &bad :
         {QStringList {out, u"--version"_s, u"1.2.3"_s},
          QStringList {out, u"--version"_s, u"1.2.3.4"_s, u"--component"_s, u"2:1.0.0.0"_s},
          QStringList {out, u"--version"_s, u"1.2.3.4"_s, u"--component"_s,
                       u"2:1.0.0.0:/no/such/file"_s}}) {
        tool.start(testsupport::dataDir() + u"/make-krp-package"_s, bad);
        ASSERT_TRUE(tool.waitForFinished(60000));
        EXPECT_EQ(tool.exitCode(), 2) << bad.join(u' ').toStdString();
    }
}
