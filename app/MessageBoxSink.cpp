// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/MessageBoxSink.h"

#include "i18n/Translator.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

void MessageBoxSink::showMessage(const QString &text)
{
    QMessageBox box(QMessageBox::NoIcon, nelib::tr("Remote Setup"), text, QMessageBox::Ok,
                    QApplication::activeWindow());
    box.button(QMessageBox::Ok)->setText(nelib::tr("OK"));
    box.exec();
}
