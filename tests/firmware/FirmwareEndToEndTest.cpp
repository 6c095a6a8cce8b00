// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/PackageBuilder.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using firmware::FirmwareVersion;
using firmware::PackageBuilder;

namespace {

constexpr int Success = 0;
constexpr int Refused = 1;
constexpr int UsageError = 2;
constexpr int NoSession = 3;

} // namespace

// A completed upload lands whole on the recorder; the exit code tells every
// other end (the recorder's reception and the uploader's outcomes are tested
// on their own).
TEST(FirmwareEndToEnd, UploadExitCodesTellWhatHappened)
{
    QTemporaryDir dir;
    // Newer than the simulator's factory 1.0.0.0 in every component.
    PackageBuilder builder(FirmwareVersion {{2, 1, 0, 0}});
    builder.addGeneratedComponent(2, FirmwareVersion {{2, 1, 0, 0}}, 20000);
    builder.addGeneratedComponent(0xF004, FirmwareVersion {{2, 0, 0, 0}}, 9000);
    builder.addGeneratedComponent(0x5151, FirmwareVersion {{1, 0, 0, 0}}, 3000);
    const QString good = dir.filePath(u"good.KRP"_s);
    QString error;
    ASSERT_TRUE(builder.write(good, &error)) << error.toStdString();
    const QString broken = dir.filePath(u"broken.KRP"_s);
    testsupport::writeFile(broken, testsupport::readFile(good).first(4000));

    const QString received = dir.filePath(u"received"_s);
    SimProcess sim({u"--firmware-dir"_s, received, u"--chunk-size"_s, u"4096"_s});
    SimProcess busy({u"--busy"_s});
    // Frames 1-4 open the session; the recorder hangs up after answering the header.
    SimProcess dropping({u"--drop-after"_s, u"5"_s});
    SimProcess gone;
    gone.kill();
    ASSERT_TRUE(sim.isRunning() && busy.isRunning() && dropping.isRunning());

    // The upload's arguments: the package, when there is one.
    const struct
    {
        const char *what;
        const SimProcess &sim;
        QString package;
        int exitCode;
        QString says;
    } cases[] = {
        {"completed", sim, good, Success, u"\n100 %\nUpdatefile transfer is completed."_s},
        {"busy recorder", busy, good, Refused, u"Update Impossible."_s},
        // Checked before connecting: the recorder is not even there.
        {"broken package", gone, broken, Refused, u"components of the firmware package run past"_s},
        {"missing package", gone, dir.filePath(u"none.KRP"_s), UsageError, u"cannot be read"_s},
        {"no package", gone, {}, UsageError, u"upload takes one PACKAGE"_s},
        {"no recorder", gone, good, NoSession, u"cannot connect"_s},
        // Whichever notices first, the upload or the session's probe.
        {"connection lost", dropping, good, NoSession,
         u"The Remote Setup is terminated\\.|closed the connection"_s},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        const testsupport::CliRun run = c.sim.cli(
            c.package.isEmpty() ? QStringList {u"upload"_s} : QStringList {u"upload"_s, c.package});
        EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(QRegularExpression(c.says))) << run.err.toStdString();
    }

    EXPECT_EQ(testsupport::readFile(received + u"/firmware-2.1.0.0.KRP"_s),
              testsupport::readFile(good));
}
