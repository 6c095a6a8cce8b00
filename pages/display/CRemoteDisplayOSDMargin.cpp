// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/display/CRemoteDisplayOSDMargin.h"

#include "i18n/Translator.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

CRemoteDisplayOSDMargin::CRemoteDisplayOSDMargin(QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(nelib::tr("Margin"));
    setModal(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(nelib::tr("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(nelib::tr("Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(buttons);
}

CRemoteDisplayOSDMargin::~CRemoteDisplayOSDMargin() = default;

void CRemoteDisplayOSDMargin::setForm(QFormLayout *form)
{
    static_cast<QVBoxLayout *>(layout())->insertLayout(0, form);
}
