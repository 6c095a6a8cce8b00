#include "tests/sim/SimFixture.h"

#include "tests/TestSupport.h"

SimFixture::SimFixture()
{
    options.port = 0;
    options.recordFile = recordPath();
}

bool SimFixture::start()
{
    server = std::make_unique<sim::RecorderServer>(options, options.recordFile);
    QString error;
    const bool started = server->start(options.address, options.port, &error);
    EXPECT_TRUE(started) << error.toStdString();
    return started;
}

QByteArray SimFixture::storedRecord() const
{
    return testsupport::readFile(recordPath());
}

std::unique_ptr<FramePeer> SimFixture::connect()
{
    auto client = std::make_unique<FramePeer>(server->port());
    EXPECT_TRUE(client->waitConnected());
    return client;
}

std::unique_ptr<FramePeer> SimFixture::admin()
{
    auto client = connect();
    EXPECT_EQ(client->loginCode("Admin", ""), 1) << "Admin login failed";
    return client;
}
