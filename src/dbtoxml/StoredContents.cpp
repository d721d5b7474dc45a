#include "dbtoxml/StoredContents.h"

using namespace Qt::StringLiterals;

StoredContents::StoredContents(const DatabaseFile &file, const LegacyBookSet &set)
    : m_file(file)
    , m_set(set)
{
}

void StoredContents::pages(const TakeText &take)
{
    rows(LegacySchema::pages, m_set.pages.size(),
         [&](qsizetype at, LegacyTableReader &table) { take(at, table.page("Html"_L1)); });
}

void StoredContents::globalPages(const TakeText &take)
{
    rows(LegacySchema::globalPages, m_set.globalPages.size(),
         [&](qsizetype at, LegacyTableReader &table) { take(at, table.page("Html"_L1)); });
}

void StoredContents::images(const TakeBytes &take)
{
    rows(LegacySchema::images, m_set.images.size(),
         [&](qsizetype at, LegacyTableReader &table) { take(at, table.bytes("Data"_L1)); });
}

QList<ConversionProblem> StoredContents::problems() const
{
    return m_findings.damaged + m_findings.odd;
}

// What is wrong with the table as a whole was found when it was read for the first time.
void StoredContents::rows(const LegacyTableRule &rule, qsizetype count, const TakeRow &take)
{
    qsizetype at = 0;
    for (LegacyTableReader table(m_file, rule, m_findings); at < count && table.next(); ++at)
        take(at, table);
}
