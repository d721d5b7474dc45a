// The database-to-XML converter: makes a project from a legacy book set. A program of its own, so
// that nothing a damaged database does to the library that reads it can hurt the editor.
#include "dbtoxml/Migration.h"
#include "dbtoxml/OutputLines.h"
#include "platform/QvError.h"
#include "platform/portable/PortableFiles.h"
#include "platform/shared/DrivesFolder.h"
#include "platform/shared/IniRegistry.h"
#include "platform/shared/PortableLocale.h"
#include "platform/shared/SystemClock.h"

#include <QCommandLineParser>
#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

ConversionOrder readArguments(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Makes a project from the database of a legacy book set and lists it. Says on its "
        "standard output, one JSON object a line, how far it is and how it ended."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    const auto add = [&](const QString &name, const QString &meaning) {
        parser.addOption({name, meaning, name});
    };
    add(u"database"_s, u"The .mdb file, as the product writes paths."_s);
    add(u"mode"_s, u"1: a whole book set."_s);
    add(u"target"_s, u"The new project's folder, directly in Docs, without backslash."_s);
    add(u"name"_s, u"The new project's name, that of the folder."_s);
    add(u"id"_s, u"The new project's ID."_s);
    add(u"language"_s, u"The new project's language: ENU, DEU, ..."_s);
    parser.addOption({u"accept-partly"_s, u"Take what can be read of a damaged database."_s});
    parser.process(application);
    return {.mode = parser.value(u"mode"_s),
            .database = parser.value(u"database"_s),
            .targetFolder = parser.value(u"target"_s),
            .projectName = parser.value(u"name"_s),
            .projectId = parser.value(u"id"_s),
            .language = parser.value(u"language"_s),
            .acceptPartly = parser.isSet(u"accept-partly"_s)};
}

ConversionReport convert(const ConversionOrder &order, const Progress &progress)
{
    ConversionReport report;
    const auto onError = [&](const QvError &error) {
        report.reason = u"The converter cannot start. "_s + error.description();
    };
    trap(onError, [&] {
        PortableFiles files{drivesFolder()};
        IniRegistry registry;
        SystemClock clock;
        PortableLocale locale;
        report = migrate({files, registry, clock, locale}, order, progress);
    });
    return report;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"qv_dbtoxml"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QV_VERSION));
    const ConversionOrder order = readArguments(application);
    OutputLines output;
    try {
        const ConversionReport report = convert(order, output.progress());
        output.say(report);
        return report.end == ConversionEnd::Done ? 0 : 1;
    } catch (const Unwinding &) {
        return 1;
    }
}
