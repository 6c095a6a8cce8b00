// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/MessageSink.h"

#include <QTextStream>

namespace cli {

// How an upload shows on standard error: a bar redrawn in place on a
// terminal ("\r[########            ] 42 %"), otherwise a line at every tenth
// of the way, so that logs stay readable. The system's messages go to the
// same stream; the bar's line is ended before one is printed.
class UploadProgress : public MessageSink
{
public:
    static constexpr int BarWidth = 20;
    static constexpr int LineStep = 10;

    UploadProgress(QTextStream &err, bool terminal);
    ~UploadProgress() override;

    void setPercentage(int percent);
    void showMessage(const QString &text) override;

private:
    void endBarLine();

    QTextStream &m_err;
    const bool m_terminal;
    int m_shown = -1;
    bool m_barOnLine = false;
};

} // namespace cli
