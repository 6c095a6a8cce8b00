// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/FieldValueParser.h"

#include "cli/SecretMask.h"
#include "i18n/CodePage.h"
#include "setup/LittleEndian.h"

#include <QStringList>

using namespace Qt::StringLiterals;
using setup::FieldFormat;
using setup::FieldInfo;
using setup::FieldType;
using setup::ValueName;

namespace cli {

namespace {

std::optional<qint64> plainNumber(QStringView value)
{
    bool ok = false;
    qint64 n = 0;
    if (value.startsWith(u"0x"_s, Qt::CaseInsensitive))
        n = value.mid(2).toLongLong(&ok, 16);
    else
        n = value.toLongLong(&ok, 10);
    return ok ? std::optional<qint64>(n) : std::nullopt;
}

std::optional<quint32> named(std::span<const ValueName> names, QStringView value)
{
    for (const ValueName &name : names) {
        if (value.compare(QLatin1StringView(name.name), Qt::CaseInsensitive) == 0)
            return name.value;
    }
    return std::nullopt;
}

QString nameList(std::span<const ValueName> names)
{
    QStringList list;
    for (const ValueName &name : names)
        list.append(QLatin1StringView(name.name));
    return list.join(u", "_s);
}

bool hasRange(const FieldInfo &field)
{
    return field.maximum >= field.minimum;
}

} // namespace

FieldValueParser::FieldValueParser(const nelib::CodePage &codePage)
    : m_codePage(codePage)
{ }

std::optional<QByteArray> FieldValueParser::parse(const FieldInfo &field, QStringView value,
                                                  QString *error) const
{
    if (field.type == FieldType::Text)
        return text(field, value, error);
    if (field.type == FieldType::Bytes)
        return raw(field, value, error);
    const auto n = number(field, value, error);
    if (!n)
        return std::nullopt;
    QByteArray bytes(field.width, '\0');
    for (int k = 0; k < field.width; ++k)
        bytes[k] = char((*n >> (8 * k)) & 0xFF);
    return bytes;
}

std::optional<quint32> FieldValueParser::number(const FieldInfo &field, QStringView value,
                                                QString *error) const
{
    const QStringView trimmed = value.trimmed();
    if (const auto n = named(field.valueNames, trimmed))
        return n;
    // Bit names come before numbers: alarm outputs are named "1" to "16".
    if (!field.bitNames.empty()) {
        quint32 mask = 0;
        bool allNamed = !trimmed.isEmpty();
        for (QStringView part : trimmed.split(u',')) {
            const auto bit = named(field.bitNames, part.trimmed());
            allNamed = allNamed && bit.has_value();
            mask |= bit.value_or(0);
        }
        if (allNamed)
            return mask;
    }
    // The dump's form "0xFF03 (Low)": the name must be the number's.
    if (const qsizetype open = trimmed.lastIndexOf(u" ("_s); open > 0 && trimmed.endsWith(u')')) {
        const auto n = plainNumber(trimmed.left(open));
        const QStringView shownName = trimmed.sliced(open + 2, trimmed.size() - open - 3);
        const char *name
            = n && *n >= 0 && *n <= 0xFFFFFFFF ? field.valueName(quint32(*n)) : nullptr;
        if (!name || shownName.compare(QLatin1StringView(name), Qt::CaseInsensitive) != 0) {
            *error = u"'%1': the number is not the one the name stands for"_s.arg(value);
            return std::nullopt;
        }
        return quint32(*n);
    }
    const auto n = plainNumber(trimmed);
    if (!n) {
        const auto names = field.valueNames.empty() ? field.bitNames : field.valueNames;
        *error = names.empty()
                     ? u"'%1' is not a number"_s.arg(value)
                     : u"'%1' is neither a number nor one of %2"_s.arg(value, nameList(names));
        return std::nullopt;
    }
    // A named field without a range is a closed list: other numbers have no
    // meaning to the recorder. Bit masks (hex) combine their names freely.
    const bool closedList
        = !field.valueNames.empty() && !hasRange(field) && field.format != FieldFormat::Hex;
    if (closedList) {
        if (!field.valueName(quint32(*n))) {
            *error = u"%1 is not one of %2"_s.arg(value, nameList(field.valueNames));
            return std::nullopt;
        }
        return quint32(*n);
    }
    // A named value outside the range is still a value of the field.
    if ((*n < field.lowest() || *n > field.highest())
        && !(*n >= 0 && *n <= 0xFFFFFFFF && field.valueName(quint32(*n)))) {
        *error = u"%1 is out of range (%2 to %3)"_s.arg(value)
                     .arg(field.lowest())
                     .arg(field.highest());
        return std::nullopt;
    }
    return quint32(*n);
}

std::optional<QByteArray> FieldValueParser::text(const FieldInfo &field, QStringView value,
                                                 QString *error) const
{
    // A password is never repeated, not even one too long to be one.
    const bool secret = SecretMask::isSecret(field);
    const QString shown = secret ? u"the value"_s : value.toString();
    QByteArray bytes;
    // The dump's quoted form: \" \\ and \xNN are bytes, the rest is text.
    const bool quoted = value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"');
    const QStringView body = quoted ? value.sliced(1, value.size() - 2) : value;
    for (qsizetype k = 0; k < body.size(); ++k) {
        const QChar c = body[k];
        if (quoted && c == u'\\') {
            if (k + 1 < body.size() && (body[k + 1] == u'"' || body[k + 1] == u'\\')) {
                bytes.append(char(body[++k].unicode()));
                continue;
            }
            bool ok = false;
            const int byte = k + 3 < body.size() && body[k + 1] == u'x'
                                 ? body.sliced(k + 2, 2).toInt(&ok, 16)
                                 : -1;
            if (!ok) {
                *error = u"bad escape in %1 (use \\\", \\\\ or \\xNN)"_s.arg(shown);
                return std::nullopt;
            }
            bytes.append(char(byte));
            k += 3;
            continue;
        }
        const QStringView one = body.sliced(k, 1);
        const QByteArray encoded = m_codePage.encode(one);
        if (m_codePage.decode(encoded) != one) {
            *error = u"%1 cannot be written in code page %2"_s.arg(
                secret ? u"a character of the value"_s : u"'%1'"_s.arg(c),
                QString::fromLatin1(m_codePage.name()));
            return std::nullopt;
        }
        bytes.append(encoded);
    }
    if (bytes.size() > field.width) {
        *error = u"%1 is %2 bytes long; at most %3 fit"_s.arg(shown)
                     .arg(bytes.size())
                     .arg(field.width);
        return std::nullopt;
    }
    bytes.resize(field.width, '\0');
    return bytes;
}

std::optional<QByteArray> FieldValueParser::raw(const FieldInfo &field, QStringView value,
                                                QString *error) const
{
    QByteArray bytes;
    const bool dotted = field.format == FieldFormat::Dotted;
    const auto parts = value.trimmed().split(dotted ? u'.' : u' ', Qt::SkipEmptyParts);
    for (QStringView part : parts) {
        bool ok = false;
        const uint byte = part.toUInt(&ok, dotted ? 10 : 16);
        if (!ok || byte > 0xFF || part.size() > 3)
            break;
        bytes.append(char(byte));
    }
    if (bytes.size() != field.width || bytes.size() != parts.size()) {
        *error = dotted ? u"'%1' is not %2 numbers from 0 to 255 joined by dots"_s.arg(value).arg(
                     field.width)
                        : u"'%1' is not %2 hex bytes"_s.arg(value).arg(field.width);
        return std::nullopt;
    }
    return bytes;
}

} // namespace cli
