// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/RemoteCommand.h"
#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "setup/SetupRecordMap.h"
#include "tests/TestSupport.h"
#include "tests/cli/InProcessCli.h"
#include "tests/session/ScriptedRecorder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using session::Frame;
using setup::FieldTable;
namespace fields = setup::fields;

namespace {

// The recorder keeps every section it is sent and acknowledges it with 1,
// except the section at `forgotten` (acknowledged, not kept) and the one at
// `refused` (acknowledged with 0).
void keepWrites(ScriptedRecorder &recorder, int forgotten = -1, int refused = -1)
{
    recorder.onFrame = [&recorder, forgotten, refused](const Frame &frame) {
        if (frame.command != RemoteCommand::SetupWrite)
            return recorder.answerAsRecorder(frame);
        const int at = int(frame.param.words[2]);
        if (at != forgotten && at != refused && at + frame.payload.size() <= recorder.record.size())
            recorder.record.replace(at, frame.payload.size(), frame.payload);
        recorder.send(RemoteCommand::SetupWriteAck, PACKET_PARAM {{at == refused ? 0u : 1u}});
    };
}

int writes(const ScriptedRecorder &recorder)
{
    return int(recorder.receivedWith(RemoteCommand::SetupWrite).size());
}

testsupport::CliRun apply(const ScriptedRecorder &recorder, const QString &arguments)
{
    return runInProcess(QStringList {u"--port"_s, QString::number(recorder.port()), u"--timeout"_s,
                                     u"3"_s, u"apply"_s}
                        + arguments.split(u' '));
}

int sectionAt(setup::Section id)
{
    return setup::SetupRecordMap::section(id).offset;
}

} // namespace

// A file as get prints it: the plan first, --check stops there, a real run
// writes each touched section once, and a second run finds nothing to do.
// A masked password and an ignored field stay as the recorder holds them;
// the JSON of dump --json is read too, and its plan masks passwords.
TEST(ApplyCommand, PlansThenWritesOnlyWhatDiffersAndThenHasNothingToDo)
{
    QTemporaryDir dir;
    const QString text = dir.filePath(u"shop.txt"_s);
    testsupport::writeFile(text, "# the shops' setup\n"
                                 "camera.title[0] = \"Shop 1\"\n"
                                 "camera.title[1] = \"CAM 02\"\n\n"
                                 "record.quality[1][2] = 0xFF03 (Low)\n"
                                 "users.password[1] = ********\n"
                                 "stream.ip-address = 127.0.0.9\n");
    const QString json = dir.filePath(u"shop.json"_s);
    testsupport::writeFile(json, R"({"source": "@127.0.0.1", "settings": [
        {"name": "camera.title[0]", "value": "\"Shop 2\""},
        {"name": "users.password[1]", "value": "n3wpw"}]})");
    ScriptedRecorder recorder;
    recorder.record = setup::FactoryDefaults::record();
    FieldTable::setBytes(recorder.record, fields::users::password, "s3cret", 1);
    const QByteArray ipBefore
        = FieldTable::bytes(recorder.record, fields::stream::ipAddress).toByteArray();
    keepWrites(recorder);

    const QString plan = u"camera.title[0] = \"CAM 01\" -> \"Shop 1\"\n"
                         "record.quality[1][2] = 0xFF01 (High) -> 0xFF03 (Low)\n"
                         "changed: 2\n"_s;
    struct Step
    {
        QString arguments;
        QString out;
        int writes; // so far
    };
    const Step steps[] = {
        {u"--check --ignore stream.ip-address %T"_s, plan, 0},
        {u"--ignore stream.* %T"_s, plan, 2},
        {u"--ignore stream.* %T"_s, u"changed: 0\n"_s, 2},
        {u"--check %J"_s,
         u"users.password[1] = ******** -> ********\n"
         "camera.title[0] = \"Shop 1\" -> \"Shop 2\"\nchanged: 2\n"_s,
         2},
    };
    for (const Step &s : steps) {
        SCOPED_TRACE(s.arguments.toStdString());
        const auto run
            = apply(recorder, QString(s.arguments).replace(u"%T"_s, text).replace(u"%J"_s, json));
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_EQ(run.out, s.out);
        EXPECT_EQ(writes(recorder), s.writes);
        EXPECT_FALSE(run.err.contains(u"n3wpw"_s) || run.out.contains(u"n3wpw"_s));
    }
    EXPECT_EQ(FieldTable::text(recorder.record, fields::camera::title, 0), "Shop 1");
    EXPECT_EQ(FieldTable::number(recorder.record, fields::record::quality, 1, 2), 0xFF03u);
    EXPECT_EQ(FieldTable::text(recorder.record, fields::users::password, 1), "s3cret");
    EXPECT_EQ(FieldTable::bytes(recorder.record, fields::stream::ipAddress), ipBefore);
}

// A value the recorder acknowledged but did not keep is caught by reading
// the record again; a refused write ends the command saying what was written.
TEST(ApplyCommand, EndsWithWhatTheRecorderDidNotKeepOrRefused)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"shop.txt"_s);
    testsupport::writeFile(file, "camera.title[0] = \"Shop 1\"\nstream.web-port = 8080\n");
    struct Case
    {
        int forgotten;
        int refused;
        QStringList messages;
    };
    const int stream = sectionAt(setup::Section::Stream);
    const Case cases[] = {
        {stream,
         -1,
         {u"stream.web-port = 80 (wanted 8080)\n"_s,
          u"the recorder did not keep stream.web-port\n"_s}},
        {-1,
         stream,
         {u"the recorder refused the write of stream"_s,
          u"written: camera; not written: stream\n"_s}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.messages.last().toStdString());
        ScriptedRecorder recorder;
        recorder.record = setup::FactoryDefaults::record();
        keepWrites(recorder, c.forgotten, c.refused);
        const auto run = apply(recorder, file);
        EXPECT_EQ(run.exitCode, 1);
        for (const QString &message : c.messages)
            EXPECT_TRUE(run.err.contains(message)) << run.err.toStdString();
        EXPECT_EQ(writes(recorder), 2);
        EXPECT_EQ(FieldTable::text(recorder.record, fields::camera::title, 0), "Shop 1");
        EXPECT_EQ(FieldTable::number(recorder.record, fields::stream::webPort), 80u);
    }
}
