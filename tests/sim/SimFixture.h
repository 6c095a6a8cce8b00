// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "sim/RecorderServer.h"
#include "sim/SessionThreads.h"
#include "sim/SimOptions.h"
#include "tests/TestSupport.h"
#include "tests/session/FramePeer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

// A recorder in process, on a free port, with its record in a fresh folder.
// Tests adjust `options` (or put a record file in place) before start().
class SimFixture : public ::testing::Test
{
protected:
    SimFixture()
    {
        options.port = 0;
        options.recordFile = recordPath();
    }

    // False (with a test failure) when the recorder does not start.
    bool start()
    {
        server = std::make_unique<sim::RecorderServer>(options, options.recordFile, &threads);
        QString error;
        const bool started = server->start(options.address, options.port, &error);
        EXPECT_TRUE(started) << error.toStdString();
        return started;
    }
    QString recordPath() const { return m_dir.filePath(QStringLiteral("recorder.dat")); }
    QByteArray storedRecord() const { return testsupport::readFile(recordPath()); }

    std::unique_ptr<FramePeer> connect()
    {
        auto client = std::make_unique<FramePeer>(server->port());
        EXPECT_TRUE(client->waitConnected());
        return client;
    }
    // Connected and logged in as Admin with the empty factory password.
    std::unique_ptr<FramePeer> admin()
    {
        auto client = connect();
        EXPECT_EQ(client->login("Admin", "").words[0], 1u) << "Admin login failed";
        return client;
    }

    sim::SimOptions options;
    // Two, so that sessions of one recorder run on different threads.
    sim::SessionThreads threads {2};
    std::unique_ptr<sim::RecorderServer> server;

private:
    QTemporaryDir m_dir;
};
