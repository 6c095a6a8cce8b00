// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/Question.h"

#include "i18n/Translator.h"

#include <QPushButton>

QMessageBox *Question::ask(QWidget *parent, const QString &text, std::function<void()> onYes)
{
    auto *box = new QMessageBox(QMessageBox::Question, nelib::tr("Remote Setup"), text,
                                QMessageBox::Yes | QMessageBox::No, parent);
    box->button(QMessageBox::Yes)->setText(nelib::tr("Yes"));
    box->button(QMessageBox::No)->setText(nelib::tr("No"));
    box->setDefaultButton(QMessageBox::No);
    box->setEscapeButton(QMessageBox::No);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(box, &QMessageBox::finished, box, [onYes = std::move(onYes)](int answer) {
        if (answer == QMessageBox::Yes)
            onYes();
    });
    box->open();
    return box;
}
