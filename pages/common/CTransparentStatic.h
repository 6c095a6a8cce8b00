// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QLabel>
#include <QPixmap>

// A label drawn over the page background: single line, vertically centred,
// in the page font at 10 points, with its own text colour. In background-copy
// mode it first restores a saved piece of the parent's background, then
// draws a saved text over it, for labels whose text changes over a picture.
class CTransparentStatic : public QLabel
{
    Q_OBJECT

public:
    explicit CTransparentStatic(const QString &text = QString(), QWidget *parent = nullptr);

    void setTextColor(const QColor &color);
    QColor textColor() const { return m_color; }
    void setFormatFlags(Qt::Alignment flags);
    void setBackgroundCopy(const QPixmap &background, const QRect &area, const QString &text);
    void clearBackgroundCopy();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color = Qt::black;
    Qt::Alignment m_flags = Qt::AlignLeft;
    bool m_backgroundCopy = false;
    QPixmap m_background;
    QRect m_area;
    QString m_savedText;
};
