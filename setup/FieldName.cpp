// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FieldName.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace setup {

namespace {

int editDistance(QStringView a, QStringView b)
{
    QList<int> row(b.size() + 1);
    for (qsizetype k = 0; k <= b.size(); ++k)
        row[k] = int(k);
    for (qsizetype x = 1; x <= a.size(); ++x) {
        int diagonal = row[0];
        row[0] = int(x);
        for (qsizetype y = 1; y <= b.size(); ++y) {
            const int above = row[y];
            row[y]
                = std::min({row[y] + 1, row[y - 1] + 1, diagonal + (a[x - 1] == b[y - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

QString unknown(QStringView text)
{
    QString message = u"no setting is named '%1'"_s.arg(text);
    const QStringList near = FieldName::nearest(text);
    if (!near.isEmpty())
        message += u"; did you mean %1?"_s.arg(near.join(u", "_s));
    return message;
}

QString indexRange(int count)
{
    return u"0 to %1"_s.arg(count - 1);
}

} // namespace

std::optional<FieldName> FieldName::parse(QStringView text, QString *error)
{
    static const QRegularExpression shape(
        u"^([a-z0-9-]+)(?:\\.([a-z0-9-]+)(?:\\[(\\d{1,4})\\](?:\\[(\\d{1,4})\\])?)?)?$"_s);
    const auto match = shape.match(text.toString());
    if (!match.hasMatch()) {
        *error = unknown(text);
        return std::nullopt;
    }
    FieldName name;
    name.group = FieldTable::findGroup(match.capturedView(1));
    if (name.group && match.hasCaptured(2))
        name.field = FieldTable::findField(*name.group, match.capturedView(2));
    if (!name.group || (match.hasCaptured(2) && !name.field)) {
        *error = unknown(text);
        return std::nullopt;
    }
    if (match.hasCaptured(3)) {
        const int i = match.capturedView(3).toInt();
        if (name.field->count < 2 || i >= name.field->count) {
            *error = name.field->count < 2
                         ? u"%1.%2 has no index"_s.arg(QLatin1StringView(name.group->key),
                                                       QLatin1StringView(name.field->name))
                         : u"index %1 of %2.%3 is out of range (%4)"_s.arg(
                             QString::number(i), QLatin1StringView(name.group->key),
                             QLatin1StringView(name.field->name), indexRange(name.field->count));
            return std::nullopt;
        }
        name.i = i;
    }
    if (match.hasCaptured(4)) {
        const int j = match.capturedView(4).toInt();
        if (name.field->count2 < 2 || j >= name.field->count2) {
            *error = name.field->count2 < 2
                         ? u"%1.%2 has one index only"_s.arg(QLatin1StringView(name.group->key),
                                                             QLatin1StringView(name.field->name))
                         : u"second index %1 of %2.%3 is out of range (%4)"_s.arg(
                             QString::number(j), QLatin1StringView(name.group->key),
                             QLatin1StringView(name.field->name), indexRange(name.field->count2));
            return std::nullopt;
        }
        name.j = j;
    }
    return name;
}

QStringList FieldName::allNames()
{
    QStringList names;
    for (const FieldGroup &g : FieldTable::groups()) {
        names.append(QString::fromLatin1(g.key));
        for (const FieldInfo &f : g.fields)
            names.append(QString::fromLatin1(g.key) + u'.' + QLatin1StringView(f.name));
    }
    return names;
}

QStringList FieldName::nearest(QStringView text, int count)
{
    // Indexes play no part in how close a name is.
    const QStringView bare = text.left(text.indexOf(u'['));
    struct Candidate
    {
        int distance;
        QString name;
    };
    QList<Candidate> candidates;
    const int limit = std::max<int>(2, int(bare.size()) / 3);
    for (const QString &name : allNames()) {
        const int distance = editDistance(bare, name);
        // A name that only lacks or repeats its section counts as close.
        const bool sameField
            = name.endsWith(u'.' + bare.toString()) || bare.endsWith(name.mid(name.indexOf(u'.')));
        if (distance <= limit || (sameField && name.contains(u'.')))
            candidates.append({distance, name});
    }
    std::stable_sort(
        candidates.begin(), candidates.end(),
        [](const Candidate &a, const Candidate &b) { return a.distance < b.distance; });
    QStringList names;
    for (const Candidate &c : candidates.first(std::min<qsizetype>(count, candidates.size())))
        names.append(c.name);
    return names;
}

QString FieldName::elementName(const FieldGroup &group, const FieldInfo &field, int i, int j)
{
    QString name = QString::fromLatin1(group.key) + u'.' + QLatin1StringView(field.name);
    if (field.count > 1)
        name += u"[%1]"_s.arg(i);
    if (field.count2 > 1)
        name += u"[%1]"_s.arg(j);
    return name;
}

QList<FieldName::Element> FieldName::elements() const
{
    QList<Element> list;
    if (!field)
        return list;
    for (int a = 0; a < field->count; ++a) {
        for (int b = 0; b < field->count2; ++b) {
            if ((!i || *i == a) && (!j || *j == b))
                list.append({a, b});
        }
    }
    return list;
}

} // namespace setup
