// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CTransparentStatic.h"

#include <QPainter>

namespace {

QFont labelFont(const QFont &base)
{
    QFont font = base;
    font.setFamilies({QStringLiteral("Arial"), QStringLiteral("Liberation Sans"),
                      QStringLiteral("DejaVu Sans")});
    font.setPointSize(10);
    return font;
}

} // namespace

CTransparentStatic::CTransparentStatic(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setFont(labelFont(font()));
}

void CTransparentStatic::setTextColor(const QColor &color)
{
    m_color = color;
    update();
}

void CTransparentStatic::setFormatFlags(Qt::Alignment flags)
{
    m_flags = flags;
    update();
}

void CTransparentStatic::setBackgroundCopy(const QPixmap &background, const QRect &area,
                                           const QString &text)
{
    m_backgroundCopy = true;
    m_background = background;
    m_area = area;
    m_savedText = text;
    update();
}

void CTransparentStatic::clearBackgroundCopy()
{
    m_backgroundCopy = false;
    m_background = QPixmap();
    update();
}

void CTransparentStatic::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(m_color);
    const Qt::Alignment flags = (m_flags & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter;
    if (m_backgroundCopy) {
        painter.drawPixmap(rect(), m_background, m_area);
        painter.drawText(rect(), int(flags) | Qt::TextSingleLine, m_savedText);
        return;
    }
    painter.drawText(rect(), int(flags) | Qt::TextSingleLine, text());
}
