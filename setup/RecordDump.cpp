// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/RecordDump.h"

#include "setup/LittleEndian.h"

#include <QLatin1StringView>
#include <QList>
#include <QMutex>

#include <algorithm>
#include <map>
#include <utility>

namespace setup {

namespace {

constexpr int ReservedPiece = 16;

// One line of a dump: a field element, or a piece of reserved bytes when
// `field` is null.
struct Item
{
    int offset;
    int length;
    QString name;
    const FieldInfo *field = nullptr;
    int i = 0;
    int j = 0;
};

QString elementName(const FieldGroup &group, const FieldInfo &field, int i, int j)
{
    QString name = QString::fromLatin1(group.key) + u'.' + QLatin1StringView(field.name);
    if (field.count > 1)
        name += QStringLiteral("[%1]").arg(i);
    if (field.count2 > 1)
        name += QStringLiteral("[%1]").arg(j);
    return name;
}

// The innermost section (or the header) that holds a byte, else its block.
struct Owner
{
    const FieldGroup *group = nullptr;
    const BlockInfo *block = nullptr;

    bool operator==(const Owner &) const = default;

    QString name() const
    {
        if (group)
            return QString::fromLatin1(group->key);
        return block ? QString::fromLatin1(block->name).toLower() : QString();
    }
};

Owner ownerOf(int offset)
{
    Owner owner;
    for (const FieldGroup &g : FieldTable::groups()) {
        if (offset >= g.offset && offset < g.end()
            && (!owner.group || g.length < owner.group->length)) {
            owner.group = &g;
        }
    }
    if (!owner.group)
        owner.block = SetupRecordMap::blockAt(offset);
    return owner;
}

QList<Item> layOut(int begin, int end)
{
    QList<Item> items;
    QList<bool> covered(end - begin, false);
    for (const FieldGroup &g : FieldTable::groups()) {
        for (const FieldInfo &f : g.fields) {
            for (int i = 0; i < f.count; ++i) {
                for (int j = 0; j < f.count2; ++j) {
                    const int at = f.elementOffset(i, j);
                    if (at < begin || at + f.width > end)
                        continue;
                    items.append({at, f.width, elementName(g, f, i, j), &f, i, j});
                    std::fill_n(covered.begin() + (at - begin), f.width, true);
                }
            }
        }
    }
    for (int at = begin; at < end;) {
        if (covered[at - begin]) {
            ++at;
            continue;
        }
        const Owner owner = ownerOf(at);
        int last = at;
        while (last + 1 < end && last + 1 - at < ReservedPiece && !covered[last + 1 - begin]
               && ownerOf(last + 1) == owner) {
            ++last;
        }
        items.append({at, last - at + 1,
                      owner.name() + QStringLiteral(".reserved[") + QString::number(at)
                          + QStringLiteral("..") + QString::number(last) + u']'});
        at = last + 1;
    }
    std::sort(items.begin(), items.end(),
              [](const Item &a, const Item &b) { return a.offset < b.offset; });
    return items;
}

// The lines of a range depend on the tables alone: laid out once per range
// and shared, so that a fleet's dumps format values and nothing else.
QList<Item> itemsIn(int begin, int end)
{
    static QMutex mutex;
    static std::map<std::pair<int, int>, QList<Item>> laidOut;
    const QMutexLocker lock(&mutex);
    auto it = laidOut.find({begin, end});
    if (it == laidOut.end())
        it = laidOut.emplace(std::pair(begin, end), layOut(begin, end)).first;
    return it->second;
}

QString hexBytes(QByteArrayView bytes)
{
    return QString::fromLatin1(bytes.toByteArray().toHex(' ').toUpper());
}

QString hexNumber(quint32 value, int width)
{
    return QStringLiteral("0x")
           + QString::number(value, 16).toUpper().rightJustified(2 * width, u'0');
}

// Up to the last non-zero byte, so that zero padding stays out of sight but a
// change anywhere in the field shows.
QString quotedText(QByteArrayView bytes)
{
    qsizetype length = bytes.size();
    while (length > 0 && bytes[length - 1] == '\0')
        --length;
    QString out(u'"');
    for (qsizetype k = 0; k < length; ++k) {
        const auto c = quint8(bytes[k]);
        if (c == '"' || c == '\\') {
            out += u'\\';
            out += QChar(char16_t(c));
        } else if (c >= 0x20 && c < 0x7F) {
            out += QChar(char16_t(c));
        } else {
            out += QStringLiteral("\\x") + QString::number(c, 16).toUpper().rightJustified(2, u'0');
        }
    }
    return out + u'"';
}

QString dotted(QByteArrayView bytes)
{
    QStringList parts;
    for (char c : bytes)
        parts.append(QString::number(quint8(c)));
    return parts.join(u'.');
}

QString formatItem(QByteArrayView record, const Item &item)
{
    if (!item.field)
        return hexBytes(record.sliced(item.offset, item.length));
    return RecordDump::value(record, *item.field, item.i, item.j);
}

QStringList dumpRange(QByteArrayView record, int begin, int end)
{
    if (record.size() != SetupRecordMap::RecordSize)
        return {};
    const QList<Item> items = itemsIn(begin, end);
    QStringList lines;
    lines.reserve(items.size());
    for (const Item &item : items)
        lines.append(item.name + QStringLiteral(" = ") + formatItem(record, item));
    return lines;
}

QStringList diffRange(QByteArrayView before, QByteArrayView after, int begin, int end)
{
    if (before.size() != SetupRecordMap::RecordSize || after.size() != SetupRecordMap::RecordSize)
        return {};
    QStringList lines;
    for (const Item &item : itemsIn(begin, end)) {
        if (before.sliced(item.offset, item.length) != after.sliced(item.offset, item.length)) {
            lines.append(item.name + QStringLiteral(" = ") + formatItem(before, item)
                         + QStringLiteral(" -> ") + formatItem(after, item));
        }
    }
    return lines;
}

} // namespace

QStringList RecordDump::dump(QByteArrayView record)
{
    return dumpRange(record, 0, SetupRecordMap::RecordSize);
}

QStringList RecordDump::dump(QByteArrayView record, const FieldGroup &group)
{
    return dumpRange(record, group.offset, group.end());
}

QStringList RecordDump::diff(QByteArrayView before, QByteArrayView after)
{
    return diffRange(before, after, 0, SetupRecordMap::RecordSize);
}

QStringList RecordDump::diff(QByteArrayView before, QByteArrayView after, const FieldGroup &group)
{
    return diffRange(before, after, group.offset, group.end());
}

QString RecordDump::value(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    switch (field.type) {
    case FieldType::Text:
        return quotedText(FieldTable::bytes(record, field, i, j));
    case FieldType::Bytes: {
        const QByteArrayView bytes = FieldTable::bytes(record, field, i, j);
        return field.format == FieldFormat::Dotted ? dotted(bytes) : hexBytes(bytes);
    }
    case FieldType::I32:
        return QString::number(qint32(FieldTable::number(record, field, i, j)));
    case FieldType::U8:
    case FieldType::U16:
    case FieldType::U32:
        break;
    }
    const quint32 number = FieldTable::number(record, field, i, j);
    QString text = field.format == FieldFormat::Hex ? hexNumber(number, field.width)
                                                    : QString::number(number);
    // Names that only repeat the number (baud rates) add nothing.
    const char *name = field.valueName(number);
    if (name && text != QLatin1StringView(name))
        text += QStringLiteral(" (") + QLatin1StringView(name) + u')';
    return text;
}

} // namespace setup
