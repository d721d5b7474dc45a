#pragma once

#include "projectfiles/BookFile.h"

#include <QStringList>

class ProjectSession;

// What a page may be called, and by what other programs may ask for it. Each question gives one
// sentence for the author, or "" when all is well.
namespace PageRules {

QString titleProblem(const QString &title);
QString keyWordProblem(const QString &keyWord, const QStringList &others);

/// What all pages of the project but one say.
struct OtherPages
{
    QList<ContextId> contextIds;
    QStringList linkIds;
};
/// Books that cannot be read say nothing.
OtherPages otherPages(ProjectSession &session, const TocBook &book, const QString &page);

/// A symbolic name is one that programs can hold: letters, digits and "_", no digit first. A number
/// lies between 0 and 4294967295. Neither is taken in the project, names without regard to case.
QString contextNameProblem(const QString &name, const QList<ContextId> &others);
QString contextNumberProblem(const QString &number, const QList<ContextId> &others);
/// One more than the highest number in use, or the lowest free one when that is too high.
QString nextContextNumber(const QList<ContextId> &others);

QString linkIdProblem(const QString &linkId, const QStringList &others);

} // namespace PageRules
