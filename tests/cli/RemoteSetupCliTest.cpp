#include "cli/GlobalOptions.h"
#include "tests/TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using testsupport::runCli;

TEST(RemoteSetupCli, UsageErrorsExitWithTwoAndSayWhatIsWrong)
{
    struct Case
    {
        QStringList arguments;
        QString message;
    };
    const Case cases[] = {
        {{}, u"usage: remote-setup-cli"_s},
        {{u"frobnicate"_s}, u"unknown command 'frobnicate'"_s},
        {{u"--colour"_s, u"translate"_s}, u"Unknown option 'colour'"_s},
        {{u"--port"_s, u"0"_s, u"translate"_s}, u"--port must be a number from 1 to 65535"_s},
        {{u"--port=65536"_s, u"translate"_s}, u"--port must be a number"_s},
        {{u"--port"_s, u"http"_s, u"translate"_s}, u"not 'http'"_s},
        {{u"--timeout"_s, u"0"_s, u"translate"_s}, u"--timeout must be"_s},
        {{u"--host"_s}, u"Missing value after '--host'"_s},
        {{u"translate"_s, u"Save"_s}, u"--language N is required"_s},
        {{u"translate"_s, u"--language"_s, u"de"_s, u"Save"_s}, u"takes a number, not 'de'"_s},
        {{u"translate"_s, u"--language"_s, u"1"_s}, u"no TEXT given"_s},
        {{u"translate"_s, u"--config"_s, u"/nonexistent/language.config"_s, u"--language"_s, u"1"_s,
          u"Save"_s},
         u"cannot read language file /nonexistent/language.config"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const auto run = runCli(c.arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_TRUE(run.err.contains(c.message)) << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
    }
}

TEST(RemoteSetupCli, HelpListsTheCommandsOnStandardOutput)
{
    const auto run = runCli({u"--help"_s});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.out.contains(u"translate [--config F] --language N"_s));
    EXPECT_TRUE(run.err.isEmpty());
}

TEST(RemoteSetupCli, TranslatePrintsOneLinePerText)
{
    QTemporaryDir dir;
    const QString config = dir.filePath(u"language.config"_s);
    testsupport::writeFile(config, "language 1 \"Deutsch\"\n"
                                   "item 1 \"Save\"\nword 1 1 \"Speichern\"\n"
                                   "item 2 \"Complete Save   \t\"\nword 2 1 \"Gespeichert\t\"\n"
                                   "item 3 \"Two\nlines\"\nword 3 1 \"Zwei\nZeilen\"\n");
    struct Case
    {
        QStringList arguments;
        QString out;
    };
    const Case cases[] = {
        {{u"--language"_s, u"1"_s, u"Save"_s, u"Cancel"_s}, u"Speichern\nCancel\n"_s},
        {{u"--language"_s, u"0"_s, u"Save"_s}, u"Save\n"_s},
        {{u"--language"_s, u"-1"_s, u"Save"_s}, u"Save\n"_s},
        {{u"--language"_s, u"7"_s, u"Save"_s}, u"Save\n"_s},
        {{u"--escapes"_s, u"--language"_s, u"1"_s, u"Complete Save   \\t"_s, u"Two\\nlines"_s,
          u"a\\\\b"_s},
         u"Gespeichert\\t\nZwei\\nZeilen\na\\\\b\n"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const auto run = runCli(QStringList {u"translate"_s, u"--config"_s, config} + c.arguments);
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_EQ(run.out, c.out);
    }
}

TEST(RemoteSetupCli, TranslateUsesTheFileBesideTheExecutable)
{
    const auto run = runCli({u"translate"_s, u"--language"_s, u"1"_s, u"CONNECT"_s, u"Save"_s});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out.count(u'\n'), 2);
}

TEST(GlobalOptions, PasswordComesFromTheFilesFirstLineElseTheEnvironment)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"password"_s);
    testsupport::writeFile(file, "s3cret pass\r\nsecond line\n");
    qputenv("REMOTE_SETUP_PASSWORD", "from-env");

    QString error;
    cli::GlobalOptions options;
    EXPECT_EQ(options.password(&error), u"from-env"_s);
    options.passwordFile = file;
    EXPECT_EQ(options.password(&error), u"s3cret pass"_s);
    options.passwordFile = dir.filePath(u"missing"_s);
    EXPECT_EQ(options.password(&error), std::nullopt);
    EXPECT_TRUE(error.contains(u"cannot read password file"_s));
    qunsetenv("REMOTE_SETUP_PASSWORD");
}
