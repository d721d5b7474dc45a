#include "dialogs/merge/MergeLog.h"

using namespace Qt::StringLiterals;

namespace {

QString line(const MergeFinding &finding)
{
    QString where = finding.project;
    if (!finding.book.isEmpty())
        where += u": %1 (%2)"_s.arg(finding.book, finding.acronym);
    if (!where.isEmpty())
        where += u": "_s;
    return where + titleOf(finding.kind) + u": "_s + finding.detail;
}

} // namespace

QString titleOf(MergeFinding::Kind kind)
{
    constexpr QLatin1StringView titles[]{
        "Book renamed"_L1,   "Book left out"_L1,     "Acronym doubled"_L1,
        "Folder renamed"_L1, "Links not changed"_L1, "Category left out"_L1,
        "Not copied"_L1,     "Not readable"_L1,      "Link file"_L1,
    };
    return titles[static_cast<int>(kind)];
}

QString mergeLog(const MergeRequest &request, const MergeResult &result, const QDateTime &when,
                 const QString &failure)
{
    QStringList lines{
        u"Merged project: %1 (%2)"_s.arg(request.name, request.id),
        u"Date: "_s + when.toString(u"yyyy-MM-dd HH:mm"_s),
        u"Base project: "_s + result.base,
        u"Merged in this order: "_s + result.order.join(u", "_s),
        u"Books: "_s + QString::number(result.books),
        u"Findings: "_s + QString::number(result.findings.size()),
    };
    if (!failure.isEmpty())
        lines.append(u"The merge ended early and the project is not in the list of projects: "_s
                     + failure);
    lines.append(QString());
    for (const MergeFinding &finding : result.findings)
        lines.append(line(finding).replace(u'\n', u' '));
    return lines.join("\r\n"_L1) + "\r\n"_L1;
}
