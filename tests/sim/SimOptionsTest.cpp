// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/SimOptions.h"
#include "tests/TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using sim::SimOptions;

namespace {

std::optional<SimOptions> parse(const QStringList &arguments, QString *error = nullptr)
{
    QString ignored;
    bool help = false;
    return SimOptions::parse(arguments, error ? error : &ignored, &help);
}

} // namespace

// The options the tests of the command line, the window and the fleet start
// recorder-sim with show there that they work; these are the others.
TEST(SimOptions, TakesTheLimitsAndTheListeningAddress)
{
    QTemporaryDir dir;
    const QString passwordFile = dir.filePath(u"admin.txt"_s);
    testsupport::writeFile(passwordFile, "s3cret\r\nsecond line\n");
    const QString arguments = u"--listen [::1]:9100 --max-users 9 --count 3 --max-connections 7 "
                              "--login-timeout 2 --keep-alive-timeout 9"_s;
    const auto options
        = parse(arguments.split(u' ') + QStringList {u"--admin-password-file"_s, passwordFile});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->address, QHostAddress(QHostAddress::LocalHostIPv6));
    EXPECT_EQ(options->portFor(2), 9102);
    EXPECT_EQ(options->maxUsers, 9);
    EXPECT_EQ(options->adminPassword, QByteArray("s3cret"));
    EXPECT_EQ(options->maxConnections, 7);
    EXPECT_EQ(options->loginTimeoutMs, 2000);
    EXPECT_EQ(options->keepAliveTimeoutMs, 9000);

    // Port 0 stays 0 for every recorder: each picks its own.
    const auto anyPort = parse({u"--listen=localhost:0"_s, u"--count=1000"_s});
    ASSERT_TRUE(anyPort);
    EXPECT_EQ(anyPort->portFor(999), 0);
}

// The numeric options share one check; its rows show it with the bounds of three.
TEST(SimOptions, RefusesWhatMakesNoSense)
{
    QTemporaryDir dir;
    const QString longPassword = dir.filePath(u"long.txt"_s);
    testsupport::writeFile(longPassword, "thirteen-char\n");
    const struct
    {
        QStringList arguments;
        QString message;
    } cases[] = {
        {{u"--channels"_s, u"17"_s}, u"--channels must be a number from 1 to 16, not '17'"_s},
        {{u"--channels"_s, u"four"_s}, u"not 'four'"_s},
        {{u"--video"_s, u"secam"_s}, u"--video must be ntsc or pal"_s},
        {{u"--version"_s, u"1.2.3.256"_s}, u"--version takes four numbers"_s},
        {{u"--model"_s, u"0x1FFFFFFFF"_s}, u"--model must be a 32-bit number"_s},
        {{u"--refuse-login"_s, u"-1"_s}, u"--refuse-login must be"_s},
        {{u"--login-timeout"_s, u"0"_s}, u"--login-timeout must be a number from 1 to 3600"_s},
        {{u"--count"_s, u"1001"_s}, u"--count must be a number from 1 to 1000"_s},
        {{u"--listen"_s, u"9000"_s}, u"--listen takes HOST:PORT"_s},
        {{u"--listen"_s, u"example.org:9000"_s}, u"--listen takes HOST:PORT"_s},
        {{u"--listen"_s, u"127.0.0.1:65536"_s}, u"--listen takes HOST:PORT"_s},
        {{u"--listen"_s, u"127.0.0.1:65535"_s, u"--count"_s, u"2"_s}, u"run past port 65535"_s},
        {{u"--record"_s, u""_s}, u"--record needs a file name"_s},
        {{u"--admin-password-file"_s, u"/nonexistent/pw"_s},
         u"cannot read --admin-password-file /nonexistent/pw"_s},
        {{u"--admin-password-file"_s, longPassword}, u"longer than 12 bytes"_s},
        {{u"--colour"_s}, u"Unknown option 'colour'"_s},
        {{u"extra"_s}, u"unexpected argument 'extra'"_s},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        QString error;
        EXPECT_FALSE(parse(c.arguments, &error));
        EXPECT_TRUE(error.contains(c.message)) << error.toStdString();
    }
}
