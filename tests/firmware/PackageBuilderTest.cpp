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

TEST(PackageBuilder, StreamsTheSamePackageItBuildsInMemory)
{
    QTemporaryDir dir;
    const QString source = dir.filePath(u"component.bin"_s);
    testsupport::writeFile(source, "file component");
    const auto make = [&] {
        PackageBuilder builder(FirmwareVersion {{3, 0, 0, 1}});
        builder.addGeneratedComponent(8, FirmwareVersion {{3, 0, 0, 0}}, 200000);
        QString error;
        EXPECT_TRUE(builder.addFileComponent(0x99, FirmwareVersion {{1, 0, 0, 0}}, source, &error))
            << error.toStdString();
        builder.addGeneratedComponent(16, FirmwareVersion {{3, 0, 0, 0}}, 1000);
        return builder;
    };

    const QByteArray built = make().build();
    QString error;
    ASSERT_TRUE(make().write(dir.filePath(u"p.KRP"_s), &error)) << error.toStdString();
    EXPECT_EQ(testsupport::readFile(dir.filePath(u"p.KRP"_s)), built);
    ASSERT_EQ(built.size(), FirmwarePackage::HeaderSize + 200000 + 14 + 1000);
    EXPECT_EQ(built.sliced(FirmwarePackage::HeaderSize + 200000, 14), "file component");
    // Generated data are not constant, and differ between components.
    const QByteArray first = built.sliced(FirmwarePackage::HeaderSize, 1000);
    const QByteArray last = built.last(1000);
    EXPECT_NE(first, last);
    EXPECT_GT(std::set<char>(first.begin(), first.end()).size(), 200u);
}

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
                u"0x20000:4.0.0.0:2K"_s, u"--component"_s, u"2:4.0.0.1:"_s + source});
    ASSERT_TRUE(tool.waitForFinished(60000));
    ASSERT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();

    FirmwarePackage::Fault fault = FirmwarePackage::Fault::Unreadable;
    const auto package = FirmwarePackage::open(out, &fault);
    ASSERT_TRUE(package);
    EXPECT_EQ(fault, FirmwarePackage::Fault::None);
    EXPECT_EQ(package->path(), out);
    const QByteArray file = testsupport::readFile(out);
    EXPECT_EQ(package->header(), file.first(FirmwarePackage::HeaderSize));
    EXPECT_EQ(package->version(), (FirmwareVersion {{4, 3, 2, 1}}));
    EXPECT_EQ(package->dataOffset(), 4096u);
    EXPECT_EQ(package->fileSize(), 4096 + 2048 + 5000);
    ASSERT_EQ(package->components().size(), 2u);
    const FirmwarePackage::Component &first = package->components()[0];
    const FirmwarePackage::Component &second = package->components()[1];
    EXPECT_EQ(first.type, 0x20000u);
    EXPECT_EQ(first.version, (FirmwareVersion {{4, 0, 0, 0}}));
    EXPECT_EQ(first.size, 2048u);
    EXPECT_EQ(first.offset, 4096u);
    EXPECT_EQ(second.type, 2u);
    EXPECT_EQ(second.version, (FirmwareVersion {{4, 0, 0, 1}}));
    EXPECT_EQ(file.sliced(second.offset, second.size), QByteArray(5000, 'i'));

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
