#pragma once

#include <QByteArray>
#include <QComboBox>
#include <QObject>
#include <QPushButton>
#include <QString>

namespace pagetest {

// The control that screen readers and UI automation know as `name`.
template<class T>
T *named(const QObject *root, const QString &name)
{
    for (T *widget : root->findChildren<T *>()) {
        if (widget->accessibleName() == name)
            return widget;
    }
    return nullptr;
}

// Picks `item` in the list named `name` as an operator would.
inline void select(const QObject *root, const QString &name, const QString &item)
{
    auto *list = named<QComboBox>(root, name);
    if (!list)
        return;
    list->setCurrentIndex(list->findText(item));
    Q_EMIT list->activated(list->currentIndex());
}

inline QPushButton *button(const QObject *root, const QString &text)
{
    for (QPushButton *b : root->findChildren<QPushButton *>()) {
        if (b->text() == text)
            return b;
    }
    return nullptr;
}

// Bytes that no field value has, so that a byte written where it should not
// be shows up: 0xA0, 0xA1, ...
inline QByteArray pattern(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char(0xA0 + i % 64);
    return bytes;
}

} // namespace pagetest
