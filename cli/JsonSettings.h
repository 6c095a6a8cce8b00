// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldInfo.h"

#include <QByteArrayView>
#include <QJsonArray>
#include <QJsonValue>
#include <QStringList>

namespace cli {

class SecretMask;

// Settings as scripts read them: each value typed by its field. Numbers are
// JSON numbers, named values {"value": 65281, "name": "High"} (name null
// for a number without one), bit masks the list of their bits' names, texts
// plain strings, raw bytes the dump's hex or dotted text. A text that would
// not read back as itself (bytes outside the code page, a leading and
// trailing double quote) keeps the dump's quoted form, so that apply takes
// every value back unchanged.
class JsonSettings
{
public:
    static QJsonValue value(QByteArrayView record, const setup::FieldInfo &field, int i = 0,
                            int j = 0);
    // Dump lines of `record` as [{"name": ..., "value": ...}]; secrets masked
    // as `mask` says, bytes no field covers as the dump shows them.
    static QJsonArray settings(QByteArrayView record, const QStringList &lines,
                               const SecretMask &mask);
    // Diff lines as [{"name": ..., "before": ..., "after": ...}].
    static QJsonArray changes(QByteArrayView before, QByteArrayView after, const QStringList &lines,
                              const SecretMask &mask);
};

} // namespace cli
