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

QMessageBox *Question::askToSave(QWidget *parent, const QString &text, std::function<void()> onSave,
                                 std::function<void()> onDiscard)
{
    auto *box
        = new QMessageBox(QMessageBox::Question, nelib::tr("Remote Setup"), text,
                          QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, parent);
    box->button(QMessageBox::Save)->setText(nelib::tr("Save"));
    box->button(QMessageBox::Discard)->setText(nelib::tr("Don't Save"));
    box->button(QMessageBox::Cancel)->setText(nelib::tr("Cancel"));
    box->setDefaultButton(QMessageBox::Save);
    box->setEscapeButton(QMessageBox::Cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(box, &QMessageBox::finished, box,
                     [onSave = std::move(onSave), onDiscard = std::move(onDiscard)](int answer) {
                         if (answer == QMessageBox::Save)
                             onSave();
                         else if (answer == QMessageBox::Discard)
                             onDiscard();
                     });
    box->open();
    return box;
}
