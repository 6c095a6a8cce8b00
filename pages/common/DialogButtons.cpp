// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/DialogButtons.h"

#include "i18n/Translator.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

QDialogButtonBox *DialogButtons::okCancel(QDialog *dialog)
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    buttons->button(QDialogButtonBox::Ok)->setText(nelib::tr("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(nelib::tr("Cancel"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return buttons;
}
