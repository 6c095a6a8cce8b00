// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/UploadProgress.h"

namespace cli {

UploadProgress::UploadProgress(QTextStream &err, bool terminal)
    : m_err(err)
    , m_terminal(terminal)
{ }

UploadProgress::~UploadProgress()
{
    endBarLine();
}

void UploadProgress::setPercentage(int percent)
{
    percent = std::clamp(percent, 0, 100);
    if (m_terminal) {
        if (percent == m_shown)
            return;
        const int filled = percent * BarWidth / 100;
        m_err << "\r[" << QString(filled, u'#') << QString(BarWidth - filled, u' ') << "] "
              << percent << " %";
        m_barOnLine = true;
    } else {
        const int step = percent - percent % LineStep;
        if (step <= m_shown)
            return;
        percent = step;
        m_err << percent << " %\n";
    }
    m_shown = percent;
    m_err.flush();
}

void UploadProgress::showMessage(const QString &text)
{
    endBarLine();
    m_err << text << '\n';
    m_err.flush();
}

void UploadProgress::endBarLine()
{
    if (!m_barOnLine)
        return;
    m_err << '\n';
    m_err.flush();
    m_barOnLine = false;
}

} // namespace cli
