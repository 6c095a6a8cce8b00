// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QDialog;
class QDialogButtonBox;

// The OK and Cancel row every dialog of the window ends with: translated
// texts, OK accepting and Cancel rejecting the dialog (an override of
// accept() or reject() is what runs).
class DialogButtons
{
public:
    static QDialogButtonBox *okCancel(QDialog *dialog);
};
