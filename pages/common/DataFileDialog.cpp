// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/DataFileDialog.h"

#include "i18n/Translator.h"

QFileDialog *DataFileDialog::create(QWidget *parent, QFileDialog::AcceptMode mode,
                                    const QString &title)
{
    auto *dialog = new QFileDialog(parent);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAcceptMode(mode);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setDefaultSuffix(QStringLiteral("dat"));
    dialog->setWindowTitle(title);
    dialog->setLabelText(QFileDialog::LookIn, nelib::tr("Look in"));
    dialog->setLabelText(QFileDialog::FileName, nelib::tr("File Name"));
    dialog->setLabelText(QFileDialog::FileType, nelib::tr("File Type"));
    dialog->setLabelText(QFileDialog::Accept,
                         mode == QFileDialog::AcceptOpen ? nelib::tr("Open") : nelib::tr("Save"));
    dialog->setLabelText(QFileDialog::Reject, nelib::tr("Cancel"));
    return dialog;
}
