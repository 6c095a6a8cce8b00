#include "session/RemoteCommand.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/SetupRecordMap.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/cli/InProcessCli.h"
#include "tests/session/ScriptedRecorder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using session::Frame;
using setup::ExportFile;
using setup::SetupRecordMap;

// An export file, the default file beside the program or a short default
// file each replace all of another recorder's record but its own parts.
TEST(SetupFileCommands, ExportImportAndFactoryDefaultReplaceAllButTheRecordersOwnParts)
{
    SimProcess source({}, testsupport::patternedRecord(1));
    ASSERT_TRUE(source.isRunning());
    QTemporaryDir dir;
    const QString path = dir.filePath(u"setup.dat"_s);
    testsupport::writeFile(path, "replaced whole");
    const auto exported = source.cli({u"export"_s, path});
    ASSERT_EQ(exported.exitCode, 0) << exported.err.toStdString();
    EXPECT_EQ(exported.out, u"Export completed\n"_s);
    const QByteArray file = testsupport::readFile(path);
    ASSERT_EQ(file.size(), ExportFile::Size);
    EXPECT_EQ(file.first(20).toHex(), "110001004b4b4d2b55475241010016003f000000");
    EXPECT_EQ(file.sliced(20), source.storedRecord().sliced(32));

    const QString shortFile = dir.filePath(u"short.dat"_s);
    const QByteArray image = testsupport::patternedRecord(3).first(1000);
    testsupport::writeFile(shortFile, image);
    QByteArray fromShort(SetupRecordMap::RecordSize, '\0');
    fromShort.replace(0, image.size(), image);
    struct Case
    {
        QStringList command;
        QByteArray image;
        bool keepsMonitor;
        QString success;
        QString warning = {};
    };
    const Case cases[] = {
        {{u"import"_s, path}, source.storedRecord(), true, u"Import Success\n"_s},
        {{u"factory-default"_s},
         setup::FactoryDefaults::record(),
         false,
         u"Default Setup Success\n"_s},
        {{u"factory-default"_s, u"--default-file"_s, shortFile},
         fromShort,
         false,
         u"Default Setup Success\n"_s,
         u"holds 1000 of 15148 bytes; the rest is sent as zeros"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.command.join(u' ').toStdString());
        SimProcess target({}, testsupport::patternedRecord(2));
        ASSERT_TRUE(target.isRunning());
        const QByteArray before = target.storedRecord();
        const auto run = target.cli(c.command);
        ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_TRUE(run.err.endsWith(c.success)) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(c.warning)) << run.err.toStdString();
        EXPECT_EQ(target.storedRecord(),
                  testsupport::keepingRecordersOwn(c.image, before, c.keepsMonitor));
    }
}
