// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

QT_BEGIN_NAMESPACE
class QLineEdit;
QT_END_NAMESPACE

// Camera / Setup: for every channel its title, whether it is covert and which
// audio input belongs to it. One row per channel; the covert column has a
// header box, and Copy Settings copies title, covert and audio between rows.
class CRemoteCameraCameraDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteCameraCameraDlg(QWidget *parent = nullptr);
    ~CRemoteCameraCameraDlg() override;

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;

private:
    QLineEdit *title(int row) const;
    void titleChanged(QLineEdit *title);
};
