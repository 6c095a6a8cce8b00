// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

// Some failures end the whole program after their message (a lost
// keep-alive, a bad entry on the connection panel, the end of a firmware
// upload). They all end through this one replaceable hook: the window quits
// with the given code, the command line exits with its own failure code,
// and tests catch the call instead of dying.
class ProgramExit
{
public:
    using Hook = std::function<void(int exitCode)>;

    // Installs `hook` for the calling thread and returns that thread's
    // previous one. A thread that installed none uses the main thread's
    // hook; without any the process exits at once.
    static Hook install(Hook hook);
    static void exitProgram(int exitCode);
};
