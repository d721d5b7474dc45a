#include "dbtoxml/LegacyReader.h"

using namespace Qt::StringLiterals;

namespace {

class Reader final
{
public:
    Reader(const DatabaseFile &file, LegacyFindings &findings, const Progress &progress)
        : m_file(file)
        , m_findings(findings)
        , m_progress(progress)
    {
    }

    /// Every row of a table becomes what `make` makes of it.
    template <typename Row>
    QList<Row> rows(const LegacyTableRule &rule, Row (*make)(LegacyTableReader &))
    {
        constexpr int tables = 9, rowsOfStep = 500;
        const QString what = u"Reading the table "_s + rule.name;
        m_progress.step(m_tablesRead++, tables, what);
        const DatabaseFile::Entry *entry = m_file.find(rule.name);
        if (!entry)
            return {};
        if (entry->hasBrokenProperties)
            m_findings.odd.append(
                {rule.name,
                 {},
                 u"The settings that the database keeps for this table are damaged; its rows are "
                 "not touched by that."_s});
        QList<Row> result;
        for (LegacyTableReader table(m_file, rule, m_findings); table.next();) {
            if (table.row() % rowsOfStep == 0)
                m_progress.step(m_tablesRead, tables, what);
            result.append(make(table));
        }
        return result;
    }

private:
    const DatabaseFile &m_file;
    LegacyFindings &m_findings;
    const Progress &m_progress;
    int m_tablesRead = 0;
};

LegacyProject projectOf(LegacyTableReader &table)
{
    return {.name = table.text("ProjectName"_L1),
            .id = table.text("ProjectID"_L1),
            .platform = table.text("Platform"_L1),
            .variation = table.text("Variation"_L1),
            .language = table.text("LanguageCode"_L1),
            .created = table.date("DateCreated"_L1)};
}

LegacyBook bookOf(LegacyTableReader &table)
{
    return {.row = table.row(),
            .id = table.number("BookID"_L1),
            .name = table.text("BookName"_L1),
            .acronym = table.text("BookAcro"_L1),
            .folder = table.text("BookFolder"_L1),
            .file = table.text("BookFile"_L1),
            .type = table.text("BookType"_L1),
            .order = table.number("SortOrder"_L1)};
}

LegacyBookCategory bookCategoryOf(LegacyTableReader &table)
{
    return {.row = table.row(),
            .book = table.number("BookID"_L1),
            .category = table.text("Category"_L1)};
}

LegacyPage pageOf(LegacyTableReader &table)
{
    return {.row = table.row(),
            .id = table.number("PageID"_L1),
            .book = table.number("BookID"_L1),
            .parent = table.number("ParentPageID"_L1),
            .title = table.text("Title"_L1),
            .file = table.text("FileName"_L1),
            .order = table.number("SortOrder"_L1)};
}

LegacyGlobalPage globalPageOf(LegacyTableReader &table)
{
    return {.row = table.row(),
            .id = table.number("PageID"_L1),
            .title = table.text("Title"_L1),
            .file = table.text("FileName"_L1),
            .category = table.text("Category"_L1),
            .order = table.number("SortOrder"_L1)};
}

LegacyNavigationNode nodeOf(LegacyTableReader &table)
{
    return {.row = table.row(),
            .id = table.number("NodeID"_L1),
            .parent = table.number("ParentID"_L1),
            .level = table.number("NodeLevel"_L1),
            .title = table.text("Title"_L1),
            .target = table.text("Target"_L1),
            .order = table.number("SortOrder"_L1)};
}

LegacyWord wordOf(LegacyTableReader &table)
{
    return {.row = table.row(),
            .word = table.text("Word"_L1),
            .book = table.number("BookID"_L1),
            .file = table.text("FileName"_L1)};
}

LegacyImage imageOf(LegacyTableReader &table)
{
    return {
        .row = table.row(), .file = table.text("FileName"_L1), .book = table.number("BookID"_L1)};
}

LegacyLink linkOf(LegacyTableReader &table)
{
    return {.row = table.row(),
            .identifier = table.text("LinkID"_L1),
            .kind = table.text("Kind"_L1),
            .book = table.number("BookID"_L1),
            .file = table.text("FileName"_L1),
            .anchor = table.text("Anchor"_L1)};
}

LegacyProject firstOf(const QList<LegacyProject> &projects, LegacyFindings &findings)
{
    if (projects.size() > 1)
        findings.odd.append(
            {LegacySchema::project.name, u"row 2"_s,
             u"It has %1 rows; only the first one was taken."_s.arg(projects.size())});
    return projects.value(0);
}

} // namespace

LegacyBookSet readBookSet(const DatabaseFile &file, LegacyFindings &findings,
                          const Progress &progress)
{
    LegacySchema::check(file);
    if (file.missingEntries() > 0)
        findings.damaged.append({{},
                                 {},
                                 u"%1 entries of its list of tables cannot be read; tables may be "
                                 "missing."_s.arg(file.missingEntries())});
    Reader reader(file, findings, progress);
    LegacyBookSet set;
    const QList<LegacyProject> projects = reader.rows(LegacySchema::project, projectOf);
    set.project = firstOf(projects, findings);
    set.projectRows = projects.size();
    set.books = reader.rows(LegacySchema::books, bookOf);
    set.bookCategories = reader.rows(LegacySchema::bookCategories, bookCategoryOf);
    set.pages = reader.rows(LegacySchema::pages, pageOf);
    set.globalPages = reader.rows(LegacySchema::globalPages, globalPageOf);
    set.navigation = reader.rows(LegacySchema::quickNav, nodeOf);
    set.words = reader.rows(LegacySchema::searchWords, wordOf);
    set.images = reader.rows(LegacySchema::images, imageOf);
    set.links = reader.rows(LegacySchema::links, linkOf);
    return set;
}
