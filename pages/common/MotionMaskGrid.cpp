// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/MotionMaskGrid.h"

#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int CellSize = 18;
constexpr quint32 CellBits = 0x3FFFFFFFu;

} // namespace

MotionMaskGrid::MotionMaskGrid(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize MotionMaskGrid::sizeHint() const
{
    return {Columns * CellSize + 1, Rows * CellSize + 1};
}

void MotionMaskGrid::setMask(const Mask &mask)
{
    for (int r = 0; r < Rows; ++r) {
        for (int c = 0; c < Columns; ++c)
            m_cells[r * Columns + c] = (mask[r] >> (Columns - 1 - c)) & 1;
    }
    update();
}

MotionMaskGrid::Mask MotionMaskGrid::mask() const
{
    Mask mask {};
    for (int r = 0; r < Rows; ++r) {
        for (int c = 0; c < Columns; ++c) {
            if (cell(r, c))
                mask[r] |= 1u << (Columns - 1 - c);
        }
        mask[r] &= CellBits;
    }
    return mask;
}

QRect MotionMaskGrid::gridRect() const
{
    return {0, 0, Columns * CellSize, Rows * CellSize};
}

QRect MotionMaskGrid::cellRect(int row, int column) const
{
    return {column * CellSize, row * CellSize, CellSize, CellSize};
}

QPoint MotionMaskGrid::cellAt(const QPoint &pos) const
{
    return {std::clamp(pos.x() / CellSize, 0, Columns - 1),
            std::clamp(pos.y() / CellSize, 0, Rows - 1)};
}

QRect MotionMaskGrid::dragCells() const
{
    // Corner to corner in any direction (QRect::normalized() would drop a cell).
    return QRect(
        QPoint(std::min(m_anchor.x(), m_current.x()), std::min(m_anchor.y(), m_current.y())),
        QPoint(std::max(m_anchor.x(), m_current.x()), std::max(m_anchor.y(), m_current.y())));
}

void MotionMaskGrid::setCells(const QRect &cells, bool watched)
{
    for (int r = cells.top(); r <= cells.bottom(); ++r) {
        for (int c = cells.left(); c <= cells.right(); ++c)
            m_cells[r * Columns + c] = watched;
    }
    update();
    Q_EMIT changed();
}

void MotionMaskGrid::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    // The channel's picture area: a dark field, lighter towards the top.
    QLinearGradient picture(0, 0, 0, height());
    picture.setColorAt(0, QColor(70, 78, 92));
    picture.setColorAt(1, QColor(28, 32, 40));
    p.fillRect(gridRect(), picture);

    const QColor watched(255, 140, 0, 130);
    for (int r = 0; r < Rows; ++r) {
        for (int c = 0; c < Columns; ++c) {
            if (cell(r, c))
                p.fillRect(cellRect(r, c), watched);
        }
    }
    p.setPen(QColor(255, 255, 255, 60));
    for (int c = 0; c <= Columns; ++c)
        p.drawLine(c * CellSize, 0, c * CellSize, Rows * CellSize);
    for (int r = 0; r <= Rows; ++r)
        p.drawLine(0, r * CellSize, Columns * CellSize, r * CellSize);

    if (m_dragging) {
        const QRect cells = dragCells();
        const QRect area(cellRect(cells.top(), cells.left()).topLeft(),
                         cellRect(cells.bottom(), cells.right()).bottomRight());
        p.fillRect(area, m_dragState ? QColor(255, 140, 0, 80) : QColor(0, 0, 0, 90));
        p.setPen(QPen(Qt::white, 2, Qt::DashLine));
        p.drawRect(area);
    }
    if (hasFocus()) {
        p.setPen(QPen(QColor(80, 170, 255), 2));
        p.drawRect(cellRect(m_cursor.y(), m_cursor.x()).adjusted(1, 1, -1, -1));
    }
}

void MotionMaskGrid::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_dragging)
        return;
    m_anchor = m_current = m_cursor = cellAt(event->position().toPoint());
    m_dragState = !cell(m_anchor.y(), m_anchor.x());
    m_dragging = true;
    // The grid keeps the pointer until the release, wherever it moves.
    grabMouse();
    update();
}

void MotionMaskGrid::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragging)
        return;
    const QPoint cell = cellAt(event->position().toPoint());
    if (cell != m_current) {
        m_current = cell;
        update();
    }
}

void MotionMaskGrid::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_dragging)
        return;
    m_current = m_cursor = cellAt(event->position().toPoint());
    m_dragging = false;
    releaseMouse();
    setCells(dragCells(), m_dragState);
}

void MotionMaskGrid::keyPressEvent(QKeyEvent *event)
{
    QPoint step;
    switch (event->key()) {
    case Qt::Key_Left:
        step = {-1, 0};
        break;
    case Qt::Key_Right:
        step = {1, 0};
        break;
    case Qt::Key_Up:
        step = {0, -1};
        break;
    case Qt::Key_Down:
        step = {0, 1};
        break;
    case Qt::Key_Space:
        setCells(QRect(m_cursor, m_cursor), !cell(m_cursor.y(), m_cursor.x()));
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    m_cursor = {std::clamp(m_cursor.x() + step.x(), 0, Columns - 1),
                std::clamp(m_cursor.y() + step.y(), 0, Rows - 1)};
    update();
}
