// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFileDialog>

// The dialog in which a data file (*.dat) is chosen to be read or written:
// Qt's own rather than the desktop's, so that its labels carry our
// translations and it looks and behaves alike everywhere. Any name may be
// entered; whoever reads or writes the file refuses a wrong one with its
// own message.
class DataFileDialog
{
public:
    // A new dialog, a child of `parent`; the caller sets its filter and
    // opens it window-modal.
    static QFileDialog *create(QWidget *parent, QFileDialog::AcceptMode mode, const QString &title);
};
