#pragma once

#include "sim/RecorderServer.h"
#include "sim/SimOptions.h"
#include "tests/session/FramePeer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

// A recorder in process, on a free port, with its record in a fresh folder.
// Tests adjust `options` (or put a record file in place) before start().
class SimFixture : public ::testing::Test
{
protected:
    SimFixture();

    // False (with a test failure) when the recorder does not start.
    bool start();
    QString recordPath() const { return m_dir.filePath(QStringLiteral("recorder.dat")); }
    QByteArray storedRecord() const;

    std::unique_ptr<FramePeer> connect();
    // Connected and logged in as Admin with the empty factory password.
    std::unique_ptr<FramePeer> admin();

    sim::SimOptions options;
    std::unique_ptr<sim::RecorderServer> server;

private:
    QTemporaryDir m_dir;
};
