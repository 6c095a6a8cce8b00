// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/WindowIcon.h"

#include <QPainter>
#include <QPixmap>

// A camera lens on a blue rounded square, with a red recording dot.
QImage WindowIcon::image(int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 64.0, size / 64.0);

    QLinearGradient body(0, 0, 0, 64);
    body.setColorAt(0, QColor(0x4f86c6));
    body.setColorAt(1, QColor(0x2b5a96));
    painter.setPen(Qt::NoPen);
    painter.setBrush(body);
    painter.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);

    painter.setBrush(QColor(0xffffff));
    painter.drawEllipse(QPointF(30, 33), 17, 17);
    painter.setBrush(QColor(0x1f3f6b));
    painter.drawEllipse(QPointF(30, 33), 10, 10);
    painter.setBrush(QColor(0xbfdbff));
    painter.drawEllipse(QPointF(26, 29), 3.5, 3.5);

    painter.setBrush(QColor(0xe53935));
    painter.drawEllipse(QPointF(52, 12), 5, 5);
    return image;
}

QIcon WindowIcon::create()
{
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64, 128})
        icon.addPixmap(QPixmap::fromImage(image(size)));
    return icon;
}
