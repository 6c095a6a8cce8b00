// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CRemoteCameraCopySettingDlg.h"

#include <QScreen>

CRemoteCameraCopySettingDlg::CRemoteCameraCopySettingDlg(QWidget *parent)
    : CopySettingDialog(parent)
{ }

// Each opening shows in a fixed size at the middle of the screen.
void CRemoteCameraCopySettingDlg::setVisible(bool visible)
{
    if (visible && !isVisible()) {
        const QRect area = (parentWidget() ? parentWidget() : this)->screen()->geometry();
        move(area.x() + area.width() / 2 - 210, area.y() + area.height() / 2 - 225);
        resize(350, 500);
    }
    CopySettingDialog::setVisible(visible);
}
