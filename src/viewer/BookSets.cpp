#include "viewer/BookSets.h"

#include "catalogue/ProjectCatalogue.h"

#include <algorithm>

namespace {

int rankOf(const CatalogueEntry &entry)
{
    bool isNumber = false;
    const int rank = entry.rank.trimmed().toInt(&isNumber);
    return isNumber ? rank : QString(defaultRank).toInt();
}

bool comesFirst(const CatalogueEntry &a, const CatalogueEntry &b)
{
    const int rankA = rankOf(a), rankB = rankOf(b);
    return rankA != rankB ? rankA < rankB : a.name.compare(b.name, Qt::CaseInsensitive) < 0;
}

} // namespace

QList<BookSet> bookSets(Session &session, FileSystem &files)
{
    if (session.serverPath.isEmpty())
        return {};
    QList<CatalogueEntry> entries = ProjectCatalogue(session, files).entries();
    std::stable_sort(entries.begin(), entries.end(), comesFirst);
    QList<BookSet> sets;
    for (const CatalogueEntry &entry : std::as_const(entries)) {
        if (entry.name.compare(favourites, Qt::CaseInsensitive) != 0)
            sets.append({entry.name, entry.language});
    }
    return sets;
}
