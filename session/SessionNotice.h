// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class SessionMessage;

// What a session has to tell its operator, as a typed outcome. The worker
// posts it to its main window (SessionMessage::Notice) instead of showing
// anything itself, so that no message box ever runs inside the worker's own
// call stack; the window shows the text and, for an outcome that ends the
// program, ends it once the box is closed. The command line prints it.
struct SessionNotice
{
    enum Kind : int {
        ConnectFail,
        LoginRefused, // `loginCode` says why
        NoSetupData,
        Saved, // a section write was applied
        ImportSucceeded,
        DefaultSucceeded,
        ImportFailed, // a block was refused or could not be sent
        DefaultFailed,
        ConnectionLost, // the keep-alive failed; the program ends
    };

    Kind kind = ConnectFail;
    int loginCode = 0;

    static SessionNotice fromMessage(const SessionMessage &message);
    // The message for the operator, translated.
    QString text() const;
    bool endsProgram() const { return kind == ConnectionLost; }
};
