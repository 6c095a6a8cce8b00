// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/MessageBoxSink.h"
#include "session/ProgramExit.h"

#include <QApplication>

// The application object: the look every window shares, the message boxes
// and the exit path of the session, and the main window's life.
class CKRemoteSetupApp : public QApplication
{
    Q_OBJECT

public:
    CKRemoteSetupApp(int &argc, char **argv);
    ~CKRemoteSetupApp() override;

    // Shows the main window and runs until it closes or the program is
    // ended; returns the exit code.
    int run();

private:
    MessageBoxSink m_sink;
    ProgramExit::Hook m_previousExit;
};
