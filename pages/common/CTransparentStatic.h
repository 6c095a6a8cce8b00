// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>

// A label drawn over the page background: single line, left-aligned and
// vertically centred, in black in the page font at 10 points.
class CTransparentStatic : public QLabel
{
    Q_OBJECT

public:
    explicit CTransparentStatic(const QString &text = QString(), QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
