// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/TestSupport.h"
#include "tests/cli/InProcessCli.h"
#include "tests/session/ScriptedRecorder.h"

#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using testsupport::runCli;

// Usage errors, bad values, bad credentials, bad hosts files and input
// files that are no regular files exit with 2, say what is wrong and reach
// no recorder. In a command `%P` is the recorder's port and `%D` a folder
// holding a FIFO `fifo`, a password file `cjk` outside the code page and the
// file `hosts`, written from the case's text with the recorder's address for
// `%R` and its port for `%P`.
TEST(RemoteSetupCli, BadInputIsRefusedBeforeAnyRecorderIsContacted)
{
    ScriptedRecorder recorder;
    const QString address = u"127.0.0.1:%1"_s.arg(recorder.port());
    QTemporaryDir dir;
    ASSERT_EQ(mkfifo(QFile::encodeName(dir.filePath(u"fifo"_s)).constData(), 0600), 0);
    testsupport::writeFile(dir.filePath(u"cjk"_s), u"pass\u4e2d\n"_s.toUtf8());
    testsupport::writeFile(dir.filePath(u"open.pw"_s), "s3cret\n");
    QFile::setPermissions(dir.filePath(u"open.pw"_s),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    struct Case
    {
        QString command;
        QStringList messages;
        QString hosts = u"%R\n"_s;
        QString want = {}; // written to %D/want
    };
    const QString fleet = u"--hosts %D/hosts "_s;
    const Case cases[] = {
        {{}, {u"usage: remote-setup-cli"_s}},
        {u"frobnicate"_s, {u"unknown command 'frobnicate'"_s}},
        {u"--colour translate"_s, {u"Unknown option 'colour'"_s}},
        {u"--port 0 translate"_s, {u"--port must be a number from 1 to 65535"_s}},
        {u"--port=65536 translate"_s, {u"--port must be a number"_s}},
        {u"--port http translate"_s, {u"not 'http'"_s}},
        {u"--timeout 0 translate"_s, {u"--timeout must be"_s}},
        {u"--host"_s, {u"Missing value after '--host'"_s}},
        {u"translate Save"_s, {u"--language N is required"_s}},
        {u"translate --language de Save"_s, {u"takes a number, not 'de'"_s}},
        {u"translate --language 1"_s, {u"no TEXT given"_s}},
        {u"translate --config /nonexistent/language.config --language 1 Save"_s,
         {u"cannot read language file /nonexistent/language.config"_s}},
        {u"--port %P set camera.titel[0]=A"_s, {u"did you mean camera.title?"_s}},
        {u"--port %P set camera.title[16]=A"_s, {u"out of range (0 to 15)"_s}},
        {u"--port %P set camera.title[0]=a/b"_s, {u"Can Not Use %, &, *, :, \", ', <, >, ?, / "_s}},
        {u"--port %P set users.rights[0]=0x1"_s, {u"always holds every right"_s}},
        {u"--port %P set camera.covert=On camera.covert[3]=Off"_s, {u"assign the same setting"_s}},
        {u"--port %P set camera=1"_s, {u"is a section"_s}},
        {u"--port %P set header.model-id=1"_s, {u"never written"_s}},
        {u"--port %P set camera.covert[0]"_s, {u"is not NAME=VALUE"_s}},
        {u"--port %P get video-los.beep"_s, {u"did you mean video-loss.beep"_s}},
        {u"--port %P apply %D/want"_s,
         {u"%D/want:4: no setting is named 'camera.bogus'"_s, u"nothing was sent"_s},
         u"%R\n"_s,
         u"camera.title[0] = \"A\"\n# a comment\n\ncamera.bogus = 1\n"_s},
        {u"--port %P apply %D/want"_s,
         {u"%D/want:1: stream.web-port: 0x10000 is out of range"_s},
         u"%R\n"_s,
         u"stream.web-port = 0x10000\n"_s},
        {u"--port %P apply --check %D/want"_s,
         {u"%D/want:2: camera.covert[3] repeats a setting of %D/want:1"_s},
         u"%R\n"_s,
         u"camera.covert = On\ncamera.covert[3] = Off\n"_s},
        {u"--port %P apply %D/want"_s,
         {u"%D/want:1: the header is the recorder's own"_s},
         u"%R\n"_s,
         u"header.model-id = 1\n"_s},
        {u"--port %P apply %D/want"_s,
         {u"'0xFF01 (Low)': the number is not the one"_s},
         u"%R\n"_s,
         u"record.quality[1][2] = 0xFF01 (Low)\n"_s},
        {u"--port %P apply %D/want"_s,
         {u"%D/want: setting 2: camera.covert[0]: "_s},
         u"%R\n"_s,
         u"{\"settings\": [{\"name\": \"camera.covert[1]\", \"value\": \"On\"},"
         u" {\"name\": \"camera.covert[0]\", \"value\": \"sometimes\"}]}"_s},
        {u"--port %P apply --ignore"_s, {u"--ignore takes a GLOB"_s}},
        {fleet + u"apply %D/want"_s,
         {u"%D/want:1: no setting is named 'users.pasword[1]'"_s},
         u"%R\n"_s,
         u"users.pasword[1] = ********\n"_s},
        {fleet + u"diff %D/hosts %D/hosts"_s, {u"compares every recorder with one setup"_s}},
        {fleet + u"info"_s,
         {u"hosts:4: expected 'host[:port] [user] [label=TEXT]"_s,
          u"hosts:5: port 70000 is not from 1 to 65535"_s, u"hosts:6: '[::1' is not a host"_s,
          u"nothing was sent to any recorder"_s},
         u"%R\n# shop 2\n\nhost name with words\n127.0.0.1:70000\n[::1\n"_s},
        {fleet + u"info"_s,
         {u"hosts:3: 127.0.0.1:"_s, u"is already listed on line 1"_s},
         u"%R\n127.0.0.1:1\n%R\n"_s},
        {fleet + u"info"_s, {u"lists no recorders"_s}, u"# nobody yet\n"_s},
        {fleet + u"set camera.covert[0]=sometimes"_s, {u"one of Off, On"_s}},
        {fleet + u"get camera.titles"_s, {u"did you mean camera.title"_s}},
        {fleet + u"upload %D/missing.krp"_s, {u"missing.krp"_s}},
        {fleet + u"export %D/hosts"_s, {u"into a folder"_s}},
        {fleet + u"factory-default"_s, {u"does not run on a fleet"_s}},
        {fleet + u"set-time 1969-12-31T23:59:59"_s, {u"in the years 1970 to 2099"_s}},
        {u"--port %P set date-time.utc-offset=-99999"_s, {u"out of range (-720 to 780)"_s}},
        {u"--port %P --user J\u4e2d info"_s,
         {u"the user id 'J\u4e2d' holds '\u4e2d', which code page WINDOWS-1252 cannot hold"_s}},
        {u"--port %P --password-file %D/cjk info"_s,
         {u"the password holds a character that code page WINDOWS-1252 cannot hold"_s}},
        {u"--port %P dump %D/fifo"_s, {u"/fifo is a FIFO, not a regular file"_s}},
        {u"--port %P diff @127.0.0.1:%P %D"_s, {u" is a folder, not a file"_s}},
        {u"--port %P import %D/fifo"_s, {u"/fifo is a FIFO"_s}},
        {u"--port %P upload %D/fifo"_s, {u"/fifo is a FIFO"_s}},
        {u"--port %P --password-file %D/fifo info"_s, {u"password file %D/fifo is a FIFO"_s}},
        {u"--port %P factory-default --default-file /dev/null"_s,
         {u"/dev/null is a device, not a regular file"_s}},
        {u"--hosts %D/fifo info"_s, {u"hosts file %D/fifo is a FIFO"_s}},
        {fleet + u"--password-file %D/cjk info"_s, {u"the password holds a character"_s}},
        {fleet + u"info"_s,
         {u"hosts:2: the user id is 16 bytes in code page WINDOWS-1252; at most 15 fit"_s,
          u"hosts:3: the user id 'J\u4e2d' holds"_s,
          u"hosts:4: 127.000.000.001:%P is already listed on line 1"_s,
          u"hosts:6: [::1]:%P is already listed on line 5"_s},
         u"%R\n127.0.0.2 SixteenBytesUser\n127.0.0.3 J\u4e2d\n127.000.000.001:%P\n"
         u"[0:0::1]:%P\n[::1]:%P\n"_s},
        {fleet + u"info"_s,
         {u"hosts:1: password file %D/open.pw may be read by others (mode 0640)"_s,
          u"hosts:2: the environment variable RS_UNSET_PASSWORD is not set"_s,
          u"hosts:3: unknown setting 'colour'"_s, u"hosts:4: a double quote is not closed"_s,
          u"hosts:5: a line names one password-file or password-env"_s,
          u"hosts:6: 'A-B' is not the name of an environment variable"_s},
         u"%R label=\"Main Street\" password-file=open.pw\n127.0.0.2 "
         u"password-env=RS_UNSET_PASSWORD\n"
         u"127.0.0.3 colour=red\n127.0.0.4 label=\"open\n127.0.0.5 password-env=A password-file=x\n"
         u"127.0.0.6 password-env=A-B\n"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.command.toStdString());
        const auto filled = [&](const QString &text) {
            return QString(text)
                .replace(u"%R"_s, address)
                .replace(u"%D"_s, dir.path())
                .replace(u"%P"_s, QString::number(recorder.port()));
        };
        testsupport::writeFile(dir.filePath(u"hosts"_s), filled(c.hosts).toUtf8());
        testsupport::writeFile(dir.filePath(u"want"_s), filled(c.want).toUtf8());
        const auto run = runInProcess(filled(c.command).split(u' ', Qt::SkipEmptyParts));
        EXPECT_EQ(run.exitCode, 2);
        for (const QString &message : c.messages)
            EXPECT_TRUE(run.err.contains(filled(message))) << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
        EXPECT_TRUE(recorder.received.empty()) << "the recorder was contacted";
    }
}

TEST(RemoteSetupCli, HelpListsTheCommandsOnStandardOutput)
{
    const auto run = runCli({u"--help"_s});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.out.contains(u"translate [--config F] --language N"_s));
    EXPECT_TRUE(run.err.isEmpty());
}

// From the given file or the one beside the executable.
TEST(RemoteSetupCli, TranslatePrintsOneLinePerText)
{
    QTemporaryDir dir;
    const QString configFile = dir.filePath(u"language.config"_s);
    testsupport::writeFile(configFile, "language 1 \"Deutsch\"\n"
                                       "item 1 \"Save\"\nword 1 1 \"Speichern\"\n"
                                       "item 2 \"Complete Save   \t\"\nword 2 1 \"Gespeichert\t\"\n"
                                       "item 3 \"Two\nlines\"\nword 3 1 \"Zwei\nZeilen\"\n");
    struct Case
    {
        QStringList arguments;
        QString out;
        bool besideTheExecutable = false;
    };
    const Case cases[] = {
        {{u"--language"_s, u"1"_s, u"Save"_s, u"Cancel"_s}, u"Speichern\nCancel\n"_s},
        {{u"--language"_s, u"-1"_s, u"Save"_s}, u"Save\n"_s},
        {{u"--escapes"_s, u"--language"_s, u"1"_s, u"Complete Save   \\t"_s, u"Two\\nlines"_s,
          u"a\\\\b"_s},
         u"Gespeichert\\t\nZwei\\nZeilen\na\\\\b\n"_s},
        {{u"--language"_s, u"1"_s, u"CONNECT"_s, u"Save"_s}, u"VERBINDEN\nSpeichern\n"_s, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const QStringList config
            = c.besideTheExecutable ? QStringList {} : QStringList {u"--config"_s, configFile};
        const auto run = runCli(QStringList {u"translate"_s} + config + c.arguments);
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_EQ(run.out, c.out);
    }
}
