#include "dialogs/MergeLog.h"

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
    switch (kind) {
    case MergeFinding::Kind::BookRenamed:
        return u"Book renamed"_s;
    case MergeFinding::Kind::BookLeftOut:
        return u"Book left out"_s;
    case MergeFinding::Kind::AcronymDoubled:
        return u"Acronym doubled"_s;
    case MergeFinding::Kind::FolderRenamed:
        return u"Folder renamed"_s;
    case MergeFinding::Kind::LinksUnchanged:
        return u"Links not changed"_s;
    case MergeFinding::Kind::CategoryLeftOut:
        return u"Category left out"_s;
    case MergeFinding::Kind::NotCopied:
        return u"Not copied"_s;
    case MergeFinding::Kind::Unreadable:
        return u"Not readable"_s;
    case MergeFinding::Kind::LinkFile:
        return u"Link file"_s;
    }
    return {};
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
