// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/MotionMaskGrid.h"

#include <QDialog>

// Edits the day or the night motion mask of one channel in a grid drawn over
// the channel's picture area. The caller sets the channel's 24 mask words and
// reads them back after OK; Cancel leaves them.
class CRemoteCameraMotionMaskDlg : public QDialog
{
    Q_OBJECT

public:
    using Mask = MotionMaskGrid::Mask;

    explicit CRemoteCameraMotionMaskDlg(QWidget *parent = nullptr);

    // `channel` counts from 1; the title names the page, the channel and the setting.
    void setMask(const Mask &mask, int channel, bool night, const QString &pageName);
    // The edited mask (bits 30 and 31 clear).
    Mask mask() const { return m_grid->mask(); }
    MotionMaskGrid *grid() const { return m_grid; }

    void setVisible(bool visible) override;

private:
    MotionMaskGrid *m_grid;
};
