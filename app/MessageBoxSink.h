// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/MessageSink.h"

// Shows the session's messages as modal message boxes with OK only, titled
// with the program's name. On the user-interface thread only.
class MessageBoxSink : public MessageSink
{
public:
    void showMessage(const QString &text) override;
};
