// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

#include <array>
#include <bitset>

// The motion mask of one channel drawn over the channel's picture area: 24
// rows of 30 cells, a watched cell tinted. The operator paints with the mouse:
// a press on a cell starts a rectangle, dragging stretches it (the pointer is
// held by the grid and the rectangle stops at the grid's edges), and the
// release sets every cell of the rectangle to the opposite of the state the
// pressed cell had. By keyboard, the arrows move a cell cursor and Space
// toggles the cell under it.
class MotionMaskGrid : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Rows = 24;
    static constexpr int Columns = 30;
    // One word per row, top row first: bit 29 is the leftmost cell, bit 0 the
    // rightmost; bits 30 and 31 carry no cell.
    using Mask = std::array<quint32, Rows>;

    explicit MotionMaskGrid(QWidget *parent = nullptr);

    void setMask(const Mask &mask);
    // The cells packed by the bit rule, bits 30 and 31 clear.
    Mask mask() const;
    bool cell(int row, int column) const { return m_cells[row * Columns + column]; }

    // The cell under `pos`, the nearest edge cell when `pos` lies outside.
    QPoint cellAt(const QPoint &pos) const;
    // The rectangle of a cell in widget coordinates.
    QRect cellRect(int row, int column) const;

    QSize sizeHint() const override;

Q_SIGNALS:
    void changed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QRect gridRect() const;
    QRect dragCells() const;
    void setCells(const QRect &cells, bool watched);

    std::bitset<Rows * Columns> m_cells;
    bool m_dragging = false;
    bool m_dragState = false;
    QPoint m_anchor; // (column, row) of the press
    QPoint m_current;
    QPoint m_cursor; // keyboard cell cursor
};
