// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/JsonSettings.h"

#include "cli/SecretMask.h"
#include "i18n/CodePage.h"
#include "setup/FieldName.h"
#include "setup/FieldTable.h"
#include "setup/RecordDump.h"

#include <QHash>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using setup::FieldInfo;
using setup::FieldName;
using setup::FieldTable;
using setup::FieldType;
using setup::RecordDump;

namespace cli {

namespace {

QJsonValue textValue(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    QByteArrayView bytes = FieldTable::bytes(record, field, i, j);
    while (!bytes.isEmpty() && bytes.back() == '\0')
        bytes.chop(1);
    const nelib::CodePage &codePage = nelib::CodePage::system();
    const QString text = codePage.decode(bytes);
    const bool readsBack = !bytes.contains('\0') && codePage.encode(text) == bytes
                           && !(text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"'));
    return readsBack ? text : RecordDump::value(record, field, i, j);
}

QJsonValue numberValue(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    const quint32 number = FieldTable::number(record, field, i, j);
    if (field.type == FieldType::I32)
        return qint32(number);
    if (!field.valueNames.empty()) {
        const char *name = field.valueName(number);
        return QJsonObject {{u"value"_s, qint64(number)},
                            {u"name"_s, name ? QJsonValue(QString::fromLatin1(name))
                                             : QJsonValue(QJsonValue::Null)}};
    }
    if (!field.bitNames.empty()) {
        QJsonArray names;
        quint32 named = 0;
        for (const setup::ValueName &bit : field.bitNames) {
            if (number & bit.value) {
                names.append(QString::fromLatin1(bit.name));
                named |= bit.value;
            }
        }
        // Bits without a name cannot be listed: the number says it all.
        if (named == number)
            return names;
    }
    return qint64(number);
}

struct Element
{
    const FieldInfo *field;
    int i;
    int j;
};

// Every element by its dump name, built once: a dump has thousands of lines.
const QHash<QString, Element> &elements()
{
    static const QHash<QString, Element> all = [] {
        QHash<QString, Element> map;
        for (const setup::FieldGroup &g : FieldTable::groups()) {
            for (const FieldInfo &f : g.fields) {
                for (int i = 0; i < f.count; ++i) {
                    for (int j = 0; j < f.count2; ++j)
                        map.insert(FieldName::elementName(g, f, i, j), {&f, i, j});
                }
            }
        }
        return map;
    }();
    return all;
}

// The element a dump line names, or null for bytes no field covers.
const Element *element(const QString &line, QString *name)
{
    *name = line.left(line.indexOf(u" = "_s));
    const auto it = elements().constFind(*name);
    return it == elements().cend() ? nullptr : &*it;
}

QJsonValue shown(QByteArrayView record, const Element *e, const QString &name, const QString &text,
                 const SecretMask &mask)
{
    if (mask.hides(name))
        return QString(SecretMask::Mask);
    if (!e)
        return text;
    return JsonSettings::value(record, *e->field, e->i, e->j);
}

} // namespace

QJsonValue JsonSettings::value(QByteArrayView record, const FieldInfo &field, int i, int j)
{
    switch (field.type) {
    case FieldType::Text:
        return textValue(record, field, i, j);
    case FieldType::Bytes:
        return RecordDump::value(record, field, i, j);
    default:
        return numberValue(record, field, i, j);
    }
}

QJsonArray JsonSettings::settings(QByteArrayView record, const QStringList &lines,
                                  const SecretMask &mask)
{
    QJsonArray array;
    for (const QString &line : lines) {
        QString name;
        const Element *e = element(line, &name);
        const QString text = line.mid(name.size() + 3);
        array.append(
            QJsonObject {{u"name"_s, name}, {u"value"_s, shown(record, e, name, text, mask)}});
    }
    return array;
}

QJsonArray JsonSettings::changes(QByteArrayView before, QByteArrayView after,
                                 const QStringList &lines, const SecretMask &mask)
{
    QJsonArray array;
    for (const QString &line : lines) {
        QString name;
        const Element *e = element(line, &name);
        const QString texts = line.mid(name.size() + 3);
        const qsizetype arrow = texts.indexOf(u" -> "_s);
        array.append(QJsonObject {{u"name"_s, name},
                                  {u"before"_s, shown(before, e, name, texts.left(arrow), mask)},
                                  {u"after"_s, shown(after, e, name, texts.mid(arrow + 4), mask)}});
    }
    return array;
}

} // namespace cli
