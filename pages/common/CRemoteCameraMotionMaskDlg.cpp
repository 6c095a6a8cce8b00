// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CRemoteCameraMotionMaskDlg.h"

#include "i18n/Placeholders.h"
#include "i18n/Translator.h"
#include "pages/common/DialogButtons.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

CRemoteCameraMotionMaskDlg::CRemoteCameraMotionMaskDlg(QWidget *parent)
    : QDialog(parent)
    , m_grid(new MotionMaskGrid(this))
{
    m_grid->setAccessibleName(nelib::tr("Mask Zone"));
    auto *buttons = DialogButtons::okCancel(this);

    auto *layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(m_grid, 0, Qt::AlignHCenter);
    layout->addWidget(buttons);
}

void CRemoteCameraMotionMaskDlg::setMask(const Mask &mask, int channel, bool night,
                                         const QString &pageName)
{
    const char *title
        = night ? RS_TEXT("%s - Ch. %d - Night Setting") : RS_TEXT("%s - Ch. %d - Day Setting");
    setWindowTitle(nelib::Placeholders::fill(nelib::tr(title), {pageName, channel}));
    m_grid->setMask(mask);
}

// Opens in the middle of the screen, the grid taking the keyboard.
void CRemoteCameraMotionMaskDlg::setVisible(bool visible)
{
    if (visible && !isVisible()) {
        adjustSize();
        const QRect area = (parentWidget() ? parentWidget() : this)->screen()->geometry();
        move(area.center() - rect().center());
        m_grid->setFocus();
    }
    QDialog::setVisible(visible);
}
