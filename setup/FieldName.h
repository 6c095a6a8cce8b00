// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldTable.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace setup {

// A name on a command line: a section ("camera"), a field ("camera.title",
// every element) or one element ("camera.title[2]", "record.quality[1][0]"),
// spelled as the dump spells it.
struct FieldName
{
    const FieldGroup *group = nullptr;
    const FieldInfo *field = nullptr; // null: the whole group
    std::optional<int> i;
    std::optional<int> j;

    // Null with `error` set when the name is malformed, unknown or its
    // index is out of range; an unknown name's error suggests the nearest.
    static std::optional<FieldName> parse(QStringView text, QString *error);
    // Every "group.field" name, in table order.
    static QStringList allNames();
    // Up to `count` known names closest to `text` by edit distance.
    static QStringList nearest(QStringView text, int count = 3);
    // The dump's name of element [i][j] of `field` in `group`.
    static QString elementName(const FieldGroup &group, const FieldInfo &field, int i, int j);

    // The elements the name covers: every one when no index was given.
    struct Element
    {
        int i;
        int j;
    };
    QList<Element> elements() const;
};

} // namespace setup
