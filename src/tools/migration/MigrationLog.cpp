#include "tools/migration/MigrationLog.h"

#include "resources/Counted.h"

#include <QCoreApplication>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MigrationLog", text);
}

QString summary(const ConversionReport &report)
{
    int read = 0, written = 0;
    for (const ConversionCount &count : report.counts) {
        read += count.read;
        written += count.written;
    }
    const QString rows = counted(read, tr("1 row"), tr("%1 rows"));
    return tr("The database had %1, of which %L2 became part of the project; %3.")
        .arg(rows)
        .arg(written)
        .arg(counted(report.problems.size(), tr("1 problem was met"), tr("%1 problems were met")));
}

QString problemLine(const ConversionProblem &problem)
{
    QStringList where{problem.table, problem.row};
    where.removeAll(QString());
    return where.isEmpty() ? problem.text : where.join(u", "_s) + u": "_s + problem.text;
}

} // namespace

QByteArray migrationLog(const QString &project, const QString &id, const ConversionReport &report)
{
    QStringList lines{tr("Migrated project: %1 (%2)").arg(project, id), summary(report)};
    for (const ConversionCount &count : report.counts)
        lines.append(
            tr("%1: %L2 read, %L3 written").arg(count.table).arg(count.read).arg(count.written));
    lines.append(QString());
    for (const ConversionProblem &problem : report.problems)
        lines.append(problemLine(problem));
    return (lines.join(u"\r\n"_s) + u"\r\n"_s).toUtf8();
}
