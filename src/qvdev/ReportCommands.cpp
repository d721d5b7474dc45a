// The link report over all projects of the server.
#include "platform/QvError.h"
#include "qvdev/Command.h"
#include "qvdev/ConsoleWorld.h"
#include "reports/LinkReport.h"
#include "reports/LocalLinks.h"
#include "reports/ReportText.h"
#include "resources/Texts.h"

#include <QCommandLineParser>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

bool isOfTargets(const Call &call)
{
    const QString kind = call.arguments.value(0, u"references"_s);
    if (kind != "targets"_L1 && kind != "references"_L1)
        throw QvError(InvalidCall, {}, u"A report is of \"targets\" or of \"references\""_s);
    return kind == "targets"_L1;
}

LinkOrder rowsOf(const LinkEntries &links, bool badOnly)
{
    LinkOrder rows;
    for (const quint32 row : allLinks(links)) {
        if (!badOnly || !links.isGood(row))
            rows.push_back(row);
    }
    return rows;
}

QByteArray reportJson(const ListedLinks &list)
{
    QJsonArray rows;
    for (const quint32 row : list.rows)
        rows.append(QJsonObject{{"status"_L1, list.links.status(row)},
                                {"id"_L1, list.links.identifier(row)},
                                {"address"_L1, list.links.address(row)}});
    return QJsonDocument(rows).toJson();
}

QByteArray reportPage(ConsoleWorld &world, const ListedLinks &list, bool ofTargets)
{
    const QString kind = text(ofTargets ? Text::IbdReport : Text::IbsReport).remove(u'&');
    const qsizetype good = list.links.goodCount();
    const QDateTime now = world.clock.now();
    const ReportHead head{text(Text::LinkReport) + u" - "_s + kind,
                          world.locale.shortDate(now.date()) + u' '
                              + QLocale().toString(now.time(), QLocale::ShortFormat),
                          u"OK: %1, BAD: %2"_s.arg(good).arg(list.links.count() - good)};
    LocalLinks local(world.files, list.links, ofTargets);
    return reportHtml(
        list, head, [&](const QString &address) { return local.urlOf(address); }, world.progress());
}

/// With --json that of a file only may be another one.
QString formatOf(const ConsoleWorld &world, const Call &call)
{
    static constexpr auto formats = "text csv html json"_L1;
    const QString format = call.options.value(u"format"_s);
    if (call.options.isSet(u"format"_s) && !QString(formats).split(u' ').contains(format))
        throw QvError(InvalidCall, {}, u"--format is \"text\", \"csv\", \"html\" or \"json\""_s);
    const bool isFree = call.options.isSet(u"output"_s) && !format.isEmpty();
    return world.output.isJson() && !isFree ? u"json"_s : format;
}

/// As files of this kind are: text for other programs is UTF-16, on standard output it is UTF-8.
QByteArray contentOf(ConsoleWorld &world, const Call &call, const ListedLinks &list, bool ofTargets)
{
    const QString format = formatOf(world, call);
    if (format == "json"_L1)
        return reportJson(list);
    if (format == "csv"_L1)
        return reportCsv(list, world.progress());
    if (format == "html"_L1)
        return reportPage(world, list, ofTargets);
    if (call.options.isSet(u"output"_s))
        return reportText(list, world.progress());
    QByteArray lines;
    for (const quint32 row : list.rows)
        lines += (list.links.status(row) + u'\t' + list.links.identifier(row) + u'\t'
                  + list.links.address(row))
                     .toUtf8()
                 + '\n';
    return lines;
}

ExitStatus report(ConsoleWorld &world, const Call &call)
{
    const bool ofTargets = isOfTargets(call);
    LinkReport reader(world.program);
    const LinkEntries links = ofTargets ? reader.GetIBD_Details(world.progress())
                                        : reader.GetIBS_Details(world.progress());
    const LinkOrder rows = rowsOf(links, call.options.isSet(u"bad"_s));
    const QByteArray content = contentOf(world, call, {links, rows}, ofTargets);
    const QString file = call.options.value(u"output"_s);
    if (file.isEmpty()) {
        world.output.bytes(content);
    } else {
        world.files.replaceFile(world.productPath(file), content);
        world.output.result({}, {{"file"_L1, file}, {"links"_L1, qint64(rows.size())}});
    }
    return links.goodCount() == links.count() ? Done : Findings;
}

} // namespace

QList<Command> reportCommands()
{
    return {
        {u"report"_s,
         u"[targets|references] [--bad] [--format FORMAT] [--output FILE]"_s,
         0,
         1,
         u"Show the links between books, and which are bad."_s,
         {{u"bad"_s, u"Only the bad ones."_s},
          {u"format"_s, u"\"text\" (if it is not given), \"csv\", \"html\" or \"json\"."_s,
           u"FORMAT"_s},
          {u"output"_s, u"Write it to this file, not to standard output."_s, u"FILE"_s}},
         {},
         report},
    };
}
