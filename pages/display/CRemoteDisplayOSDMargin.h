// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

QT_BEGIN_NAMESPACE
class QFormLayout;
QT_END_NAMESPACE

// The "Margin" dialog of the OSD page: the four margins of the recorder's
// overlay. The page binds the margin boxes into the dialog's form.
class CRemoteDisplayOSDMargin : public QDialog
{
    Q_OBJECT

public:
    explicit CRemoteDisplayOSDMargin(QWidget *parent = nullptr);
    ~CRemoteDisplayOSDMargin() override;

    // Takes `form` (the margin boxes) above the OK and Cancel buttons.
    void setForm(QFormLayout *form);
};
