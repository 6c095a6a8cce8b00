// SPDX-License-Identifier: GPL-3.0-or-later

// make-krp-package: writes a firmware update package for the tests, the demo
// and the benchmark.
//
//   make-krp-package OUT --version a.b.c.d [--data-offset N]
//                    --component TYPE:a.b.c.d:SIZE_OR_FILE ...
//
// TYPE is decimal or 0x hex. SIZE_OR_FILE is a byte count (with an optional
// K or M suffix), which yields that many pseudo-random bytes, the same on
// every run; anything else names a file whose contents become the component.

#include "firmware/FirmwarePackage.h"
#include "firmware/PackageBuilder.h"

#include "BuildInfo.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>

#include <cstdio>
#include <cstring>
#include <limits>

using namespace Qt::StringLiterals;
using firmware::FirmwareVersion;
using firmware::PackageBuilder;

namespace {

constexpr int UsageError = 2;
constexpr int WriteError = 1;

int fail(int code, const QString &message)
{
    std::fputs(qPrintable(u"make-krp-package: "_s + message + u'\n'), stderr);
    return code;
}

std::optional<quint64> parseNumber(const QString &text)
{
    bool ok = false;
    const quint64 value = text.startsWith(u"0x"_s, Qt::CaseInsensitive)
                              ? text.mid(2).toULongLong(&ok, 16)
                              : text.toULongLong(&ok, 10);
    return ok ? std::optional(value) : std::nullopt;
}

std::optional<quint64> parseSize(const QString &text)
{
    static const QRegularExpression size(u"^(\\d+)([KkMm]?)$"_s);
    const auto match = size.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const quint64 unit = match.captured(2).isEmpty() ? 1
                         : match.captured(2).compare(u"k"_s, Qt::CaseInsensitive) == 0
                             ? 1024
                             : 1024 * 1024;
    return match.captured(1).toULongLong() * unit;
}

bool addComponent(PackageBuilder &builder, const QString &argument, QString *error)
{
    const qsizetype first = argument.indexOf(u':');
    const qsizetype second = first < 0 ? -1 : argument.indexOf(u':', first + 1);
    if (second < 0) {
        *error = u"--component takes TYPE:a.b.c.d:SIZE_OR_FILE, not '%1'"_s.arg(argument);
        return false;
    }
    const auto type = parseNumber(argument.first(first));
    const auto version
        = FirmwareVersion::parse(QStringView(argument).sliced(first + 1, second - first - 1));
    const QString source = argument.sliced(second + 1);
    if (!type || *type > std::numeric_limits<quint32>::max() || !version || source.isEmpty()) {
        *error = u"--component takes TYPE:a.b.c.d:SIZE_OR_FILE, not '%1'"_s.arg(argument);
        return false;
    }
    if (const auto size = parseSize(source)) {
        if (*size > std::numeric_limits<quint32>::max()) {
            *error = u"a component holds less than 4 GiB, not %1 bytes"_s.arg(*size);
            return false;
        }
        builder.addGeneratedComponent(quint32(*type), *version, quint32(*size));
        return true;
    }
    return builder.addFileComponent(quint32(*type), *version, source, error);
}

} // namespace

int main(int argc, char **argv)
{
    // --version with a value is the package's version; alone it asks for the
    // program's.
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("make-krp-package " RS_VERSION);
        return 0;
    }
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Writes a firmware update package (.KRP)."_s);
    parser.addHelpOption();
    parser.addPositionalArgument(u"OUT"_s, u"the package file to write"_s);
    const QCommandLineOption version(
        u"version"_s, u"package version; alone: print the program's version and exit"_s,
        u"a.b.c.d"_s);
    const QCommandLineOption dataOffset(u"data-offset"_s,
                                        u"where the component data start (3072)"_s, u"N"_s);
    const QCommandLineOption component(u"component"_s,
                                       u"a component: its type, version and size or file"_s,
                                       u"TYPE:a.b.c.d:SIZE_OR_FILE"_s);
    parser.addOptions({version, dataOffset, component});
    if (!parser.parse(app.arguments()))
        return fail(UsageError, parser.errorText());
    if (parser.isSet(u"help"_s)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.positionalArguments().size() != 1)
        return fail(UsageError, u"give exactly one OUT file"_s);
    const auto packageVersion = FirmwareVersion::parse(parser.value(version));
    if (!packageVersion)
        return fail(UsageError, u"--version takes a.b.c.d with parts from 0 to 255"_s);

    PackageBuilder builder(*packageVersion);
    if (parser.isSet(dataOffset)) {
        const auto offset = parseNumber(parser.value(dataOffset));
        if (!offset || *offset < quint64(firmware::FirmwarePackage::HeaderSize)
            || *offset > std::numeric_limits<quint32>::max())
            return fail(UsageError, u"--data-offset takes a number from 3072 on"_s);
        builder.setDataOffset(quint32(*offset));
    }
    QString error;
    for (const QString &argument : parser.values(component)) {
        if (!addComponent(builder, argument, &error))
            return fail(UsageError, error);
    }
    if (!builder.write(parser.positionalArguments().first(), &error))
        return fail(WriteError, error);
    return 0;
}
