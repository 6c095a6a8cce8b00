// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

QT_BEGIN_NAMESPACE
class QComboBox;
class QSpinBox;
QT_END_NAMESPACE

// Asks what a setup file does not hold about the recorder it is meant for:
// its channel count (1 to 16) and video standard, which decide the rows and
// the lists the pages show.
class RecorderTypeDialog : public QDialog
{
    Q_OBJECT

public:
    RecorderTypeDialog(int channels, int videoStandard, QWidget *parent = nullptr);

    int channels() const;
    // 0 NTSC, 1 PAL.
    int videoStandard() const;

private:
    QSpinBox *m_channels;
    QComboBox *m_videoStandard;
};
