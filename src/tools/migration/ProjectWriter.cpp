#include "tools/migration/ProjectWriter.h"

#include "catalogue/StatusIndicators.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/GlobalBook.h"
#include "tools/migration/GrowingFiles.h"
#include "tools/migration/LegacyCategories.h"
#include "tools/migration/LegacyFiles.h"
#include "tools/migration/LegacyLinkFile.h"
#include "tools/migration/LegacyNavigation.h"
#include "tools/migration/LegacyRows.h"
#include "tools/migration/LegacyWords.h"
#include "tools/migration/MigratedToc.h"
#include "tools/migration/MigrationLog.h"

using namespace Qt::StringLiterals;

namespace {

/// A project that is only being made is not handed to any window.
class NoWindows final : public CurrentProject
{
public:
    void handOver(const QString &projectName, const QString &) override
    {
        throw QvError(InvalidCall, {}, u"The project is not ready yet: "_s + projectName);
    }
};

Session sessionOf(const MigratedProject &project)
{
    Session session;
    session.serverPath = project.serverPath;
    session.projectName = project.name;
    session.projectLanguage = project.language;
    session.projectId = project.id;
    return session;
}

/// "Welcome" and so on: what a global page is by its category or title.
QString typeOf(const LegacyGlobalPage &page)
{
    static constexpr QLatin1StringView types[]{"Welcome"_L1, "Legal"_L1,   "Glossary"_L1,
                                               "HowTo"_L1,   "Contact"_L1, "Free"_L1};
    for (const QString *text : {&page.category, &page.title}) {
        const QString plain = QString(*text).remove(u' ');
        for (const QLatin1StringView type : types) {
            if (plain.compare(type, Qt::CaseInsensitive) == 0)
                return type;
        }
    }
    return u"Free"_s;
}

class Writer final
{
public:
    Writer(FileSystem &files, Clock &clock, SystemLocale &locale, const MigratedProject &project,
           const LegacyBookSet &set)
        : m_session(sessionOf(project))
        , m_project(project)
        , m_folder(projectFolder(project.serverPath, project.name))
        , m_files(files, m_folder, project.folder)
        , m_clock(clock)
        , m_locale(locale)
        , m_set(set)
        , m_places(placeFiles(m_set, m_free, m_notes))
        , m_outlines(m_set, m_places, m_notes)
    {
        m_notes.add(set.problems);
    }

    ConversionReport write(LegacyContents &contents, const Progress &progress)
    {
        LegacyFiles pages(m_files, {m_folder, m_project.language}, m_set, m_places, m_notes);
        pages.write(contents, m_free, progress);
        m_notes.add(contents.problems());
        const LegacyLinkFile links = linkFileOf(m_set, m_places, m_project.name, m_notes);
        if (links.document.first_child())
            saveXml(m_files, m_folder + ProjectFile::links, links.document);
        writeBooks(pages.pageTitles(), links.pageLinkIds);
        writeGlobals(pages.globalTitles());
        writeQuickNav(m_session, m_files, m_project.name,
                      navigationOf(m_set, m_places, m_outlines, m_notes));
        writeKeyWords(m_session, m_files, m_project.name,
                      keyWordsOf(m_set, m_places, m_outlines, m_notes));
        NoWindows windows;
        StatusIndicators(m_session, m_files, windows)
            .CreateStatusIndicatorXmlFile(m_folder + ProjectFile::status);
        writeToc(); // last, as it makes a folder a project
        return writeLog();
    }

private:
    void writeBooks(const QStringList &titles, const QList<QStringList> &linkIds)
    {
        for (qsizetype at = 0; at < m_places.books.size(); ++at) {
            const PlacedBook &placed = m_places.books.at(at);
            const Book book{.name = placed.name,
                            .acronym = placed.acronym,
                            .key = m_project.name,
                            .path = u"Docs\\"_s + m_project.name + u'\\' + placed.folder,
                            .language = m_project.language,
                            .dateChanged = m_clock.now().date().toString(Qt::ISODate),
                            .pages = m_outlines.pagesOf(at, titles, linkIds),
                            .sources = {}};
            BookFile(m_session, m_files).write(m_project.name, entryOf(placed), book);
        }
        m_notes.count(LegacyTable::books, m_set.books.size());
    }

    [[nodiscard]] TocBook entryOf(const PlacedBook &book) const
    {
        return {.name = book.name,
                .acronym = book.acronym,
                .key = m_project.name,
                .folder = withoutBackslash(book.folder),
                .file = book.file,
                .type = book.type,
                .categories = {}};
    }

    void writeGlobals(const QStringList &titles)
    {
        QList<GlobalPage> pages;
        const QString folder = ProjectFile::globalFolder + u"\\"_s;
        for (const qsizetype at : inOrder(m_set.globalPages))
            pages.append({.id = {}, // given in this order, as the outlines say
                          .type = typeOf(m_set.globalPages.at(at)),
                          .title = titles.at(at),
                          .file = m_places.globalPages.at(at).now.sliced(folder.size())});
        writeGlobalPages(m_session, m_files, m_project.name, pages);
    }

    void writeToc()
    {
        const LegacyCategories categories = categoriesOf(m_set, m_places, m_notes);
        QList<Category> own;
        for (const QString &name : categories.all)
            own.append({.id = {}, .name = name, .description = {}});
        CategoryFile(m_files).write(m_folder + ProjectFile::categories, own);
        Toc toc{.header = headerOf(), .books = {}};
        toc.header.categories = categories.all;
        for (qsizetype at = 0; at < m_places.books.size(); ++at) {
            toc.books.append(entryOf(m_places.books.at(at)));
            toc.books.last().categories = categories.books.at(at);
        }
        saveXml(m_files, m_folder + ProjectFile::toc, tocDocument(toc));
    }

    TocHeader headerOf()
    {
        const MigratedHeader header = migratedHeader(m_set.project, m_project, m_clock, m_locale);
        for (const QString &problem : header.problems)
            m_notes.add(LegacyTable::project, {}, problem);
        m_notes.count(LegacyTable::project, m_set.projectRows,
                      m_set.projectRows - (header.isThere ? 1 : 0));
        return header.header;
    }

    ConversionReport writeLog()
    {
        const ConversionReport report = m_notes.report();
        m_files.replaceFile(m_folder + migrationLogFile,
                            migrationLog(m_project.name, m_project.id, report), {});
        return report;
    }

    MigrationNotes m_notes;
    Session m_session;
    const MigratedProject &m_project;
    const QString m_folder; ///< where its files will lie
    GrowingFiles m_files;
    Clock &m_clock;
    SystemLocale &m_locale;
    FreePlaces m_free;
    const LegacyBookSet &m_set;
    const LegacyPlaces m_places;
    const LegacyOutlines m_outlines;
};

} // namespace

ConversionReport writeProject(FileSystem &files, Clock &clock, SystemLocale &locale,
                              const MigratedProject &project, const LegacyBookSet &set,
                              LegacyContents &contents, const Progress &progress)
{
    return Writer(files, clock, locale, project, set).write(contents, progress);
}
