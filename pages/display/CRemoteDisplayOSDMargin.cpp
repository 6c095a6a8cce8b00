// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/display/CRemoteDisplayOSDMargin.h"

#include "i18n/Translator.h"
#include "pages/common/DialogButtons.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

CRemoteDisplayOSDMargin::CRemoteDisplayOSDMargin(QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(nelib::tr("Margin"));
    setModal(true);
    auto *buttons = DialogButtons::okCancel(this);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(buttons);
}

CRemoteDisplayOSDMargin::~CRemoteDisplayOSDMargin() = default;

void CRemoteDisplayOSDMargin::setForm(QFormLayout *form)
{
    static_cast<QVBoxLayout *>(layout())->insertLayout(0, form);
}
