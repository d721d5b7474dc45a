#include "dialogs/merge/ProjectMerge.h"

#include "catalogue/NameClaim.h"
#include "catalogue/ProjectCatalogue.h"
#include "catalogue/StatusIndicators.h"
#include "components/Categories.h"
#include "components/Components.h"
#include "components/LinkIDMerger.h"
#include "dialogs/NewProjectFolder.h"
#include "dialogs/merge/MergeSources.h"
#include "dialogs/merge/MergedBooks.h"
#include "dialogs/merge/MergedCategories.h"
#include "dialogs/merge/SharedFiles.h"
#include "platform/Clock.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/ProjectCopy.h"
#include "projectfiles/TocMerge.h"
#include "resources/Texts.h"
#include "startup/ContentFiles.h"
#include "startup/Session.h"

#include <algorithm>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;
using Kind = MergeFinding::Kind;

namespace {

constexpr ReplaceOptions inFreshFolder{.sync = false, .throughReadOnly = true};

/// What the merged project gets anew or not at all.
constexpr QLatin1StringView madeAnew[]{
    ProjectFile::categories, ProjectFile::status, ProjectFile::keyWords, ProjectFile::links,
    ProjectFile::searchWordsFolder, mergeLogFile,
    // these tell what was found in the base project alone
    "DocToDoc_Log.txt"_L1, "QuickNav\\QuickNav_Log.txt"_L1, "SearchWords_Log.txt"_L1,
    "QV_QAReport.xml"_L1, "QV_PageFacts.bin"_L1, "QV_SearchWords.bin"_L1, "Migration_Log.txt"_L1};

/// Files of the base project that stay behind, and its packed copy.
bool staysBehind(const TreeEntry &entry, const QString &base)
{
    const QString &path = entry.relative;
    if (entry.status.kind == FileKind::File && !path.contains(u'\\')
        && (path.contains(u"QV%1_Server.Zip"_s.arg(base), Qt::CaseInsensitive)
            || path.compare(base + u"_QA_Log.txt"_s, Qt::CaseInsensitive) == 0))
        return true;
    return std::any_of(std::begin(madeAnew), std::end(madeAnew), [&](QLatin1StringView name) {
        return path.compare(name, Qt::CaseInsensitive) == 0;
    });
}

/// One merge, from checked sources to the listed project.
class MergeRun final
{
public:
    MergeRun(Program &program, const MergeRequest &request)
        : m_program(program)
        , m_request(request)
        , m_place(program)
        , m_categories(program)
        , m_sources(readMergeSources(program, request.projects))
    {
        for (const MergeSource &source : m_sources)
            m_categories.GetCategories(source);
        m_firstCategories = m_sources.front().folder + ProjectFile::categories;
        CheckMergeProjectsDate(program, m_sources);
        m_result.base = base().name;
        for (const MergeSource &source : m_sources)
            m_result.order.append(source.name);
        program.session.projectLanguage =
            request.language.isEmpty() ? base().language : request.language;
    }

    MergeResult work(const Progress &progress);

private:
    void fill(const Progress &progress);
    void copyBase(const Progress &progress);
    void makeProjectFiles();
    void readBooks();
    void noteBooks(const QString &project, const QList<MergedBook> &books);
    void mergeLinks(const Progress &progress);
    void writeLog(const QString &failure = {});
    [[noreturn]] void leave(const QvError &error);
    void note(Kind kind, const QString &detail, const QString &project = {});

    [[nodiscard]] const MergeSource &base() const { return m_sources.front(); }
    [[nodiscard]] QString folder() const { return withBackslash(m_place.folder().path()); }

    Program &m_program;
    const MergeRequest &m_request;
    NewProjectFolder m_place;
    MergedCategories m_categories;
    std::vector<MergeSource> m_sources; ///< in merge order
    QString m_firstCategories;          ///< file of the first project of the merge list
    MergeResult m_result;
    std::optional<TocMerge> m_toc;    ///< once the base is copied
    std::vector<MergedBooks> m_books; ///< of each project but the base
};

MergeResult MergeRun::work(const Progress &progress)
{
    m_place.startGrowing();
    try {
        fill(progress);
        m_place.folder().putInPlace(progress);
        ProjectCatalogue(m_program.session, m_program.files).UpdateQVSelection();
    } catch (const Unwinding &) {
        m_place.folder().discard();
        throw;
    } catch (const CopyFailure &) {
        m_place.folder().discard();
        throw;
    } catch (...) {
        leave(currentError());
    }
    return m_result;
}

void MergeRun::fill(const Progress &progress)
{
    const int added = static_cast<int>(m_sources.size()) - 1;
    const int pieces = 2 * added + 2;
    copyBase(progress.piece(0, pieces, base().name));
    makeProjectFiles();
    readBooks();
    for (int i = 0; i < added; ++i)
        m_books[size_t(i)].bring(folder(), progress.piece(1 + i, pieces, m_result.order[i + 1]));
    SharedFiles shared(m_program, folder(), bookFoldersOf(m_toc->document()), m_result.findings);
    for (int i = 0; i < added; ++i)
        shared.bring(m_sources[size_t(i) + 1], m_books[size_t(i)].renamedFolders(),
                     progress.piece(1 + added + i, pieces, m_result.order[i + 1]));
    mergeLinks(progress.piece(pieces - 1, pieces, m_request.name));
    writeLog();
}

void MergeRun::copyBase(const Progress &progress)
{
    ProjectCopy copy(m_program.session, m_program.files, m_program.clock, m_program.locale,
                     folder());
    const auto leaveOut = [&](const TreeEntry &entry) { return staysBehind(entry, base().name); };
    const CopyRemarks remarks =
        copy.CopyProjectFolder(base().name, progress.piece(0, 2, base().name), leaveOut);
    for (const QString &link : remarks.links)
        note(Kind::NotCopied, u"Links to other places are not copied: "_s + link, base().name);
    for (const QString &remark : remarks.unreadable)
        note(Kind::Unreadable, remark, base().name);

    Session session = m_program.session;
    session.projectLanguage = base().language; // in which its pages are to be read
    for (const QString &page :
         ContentFiles(session, m_program.files)
             .QVUpdateFiles(folder(), base().name, 1, progress.piece(1, 2, base().name)))
        note(Kind::Unreadable, u"Kept beside an empty page: "_s + page, base().name);
}

void MergeRun::makeProjectFiles()
{
    for (const QString &part :
         m_categories.write(m_firstCategories, folder() + ProjectFile::categories))
        note(Kind::CategoryLeftOut, u"The name is part of another category's: "_s + part);
    if (m_program.files.exists(m_firstCategories)
        && !m_program.components.categories.isUsable(m_firstCategories))
        note(Kind::Unreadable, u"Its categories are not taken over: "_s + m_firstCategories);
    StatusIndicators(m_program.session, m_program.files, m_program.currentProject)
        .CreateStatusIndicatorXmlFile(folder() + ProjectFile::status);
}

// The table of contents is complete before the first folder is copied, and saved once: whatever
// happens then, it lists every book.
void MergeRun::readBooks()
{
    m_toc.emplace(loadXml(m_program.files, folder() + ProjectFile::toc, "QV_Master"),
                  m_request.name);
    BookPlaces places(m_program.files, folder(), bookFoldersOf(m_toc->document()));
    for (size_t i = 1; i < m_sources.size(); ++i) {
        const QList<MergedBook> books = m_toc->ReadBookNodesfromQVTOC(m_sources[i].toc);
        noteBooks(m_sources[i].name, books);
        m_books.emplace_back(m_program, m_sources[i], books, places, m_result.findings);
    }
    m_result.books = m_toc->bookCount();
    saveXml(m_program.files, folder() + ProjectFile::toc, m_toc->document(), inFreshFolder);
}

void MergeRun::noteBooks(const QString &project, const QList<MergedBook> &books)
{
    for (const MergedBook &book : books) {
        const auto noteBook = [&](Kind kind, const QString &detail) {
            m_result.findings.append({kind, project, book.name, book.acronym, detail});
        };
        if (!book.element)
            noteBook(Kind::BookLeftOut,
                     u"There are books of this name and of this acronym already"_s);
        else if (book.isRenamed())
            noteBook(Kind::BookRenamed,
                     u"Its acronym was %1, which is taken"_s.arg(book.ownAcronym));
        if (book.element && book.acronymDoubled)
            noteBook(Kind::AcronymDoubled, u"Another book has this acronym too"_s);
    }
}

// The slot before the first project names none and stands for a file in the Docs folder.
void MergeRun::mergeLinks(const Progress &progress)
{
    const QString docs = docsFolder(m_program.session.serverPath);
    QList<LinkSource> sources{{docs + u'\\' + ProjectFile::links, {}, {}}};
    for (size_t i = 0; i < m_sources.size(); ++i)
        sources.append({m_sources[i].folder + ProjectFile::links, m_sources[i].name,
                        i == 0 ? QHash<QString, QString>() : m_books[i - 1].renamedFolders()});
    for (const QString &line : m_program.components.linkIDMerger.mergeAll(
             folder() + ProjectFile::links, m_request.name, sources, progress))
        note(Kind::LinkFile, line);
}

void MergeRun::writeLog(const QString &failure)
{
    for (MergeFinding &finding : m_result.findings)
        finding.detail = m_place.inPlace(finding.detail);
    m_result.logPath = m_place.place() + u'\\' + mergeLogFile;
    m_program.files.replaceFile(
        folder() + mergeLogFile,
        mergeLog(m_request, m_result, m_program.clock.now(), failure).toUtf8());
}

/// Ends a merge that failed: what was written stays, unlisted, and says why.
void MergeRun::leave(const QvError &error)
{
    if (!m_program.files.folderExists(m_place.folder().path())) {
        m_place.folder().discard();
        throw error;
    }
    const QString reason = m_place.inPlace(error.description());
    QString told =
        u"%1\n\nThe merge ended early. What was written so far is kept, but is not in the "
        "list of projects."_s.arg(reason);
    trap([](const QvError &) {}, // the disk may be full; the error itself is told
         [&] {
             writeLog(reason);
             told += u" %1 in it tells the rest."_s.arg(mergeLogFile);
         });
    m_place.folder().leaveInPlace();
    throw QvError(error.number(), error.source(), told + u"\nFolder: "_s + m_place.folder().path());
}

void MergeRun::note(Kind kind, const QString &detail, const QString &project)
{
    m_result.findings.append({kind, project, {}, {}, detail});
}

} // namespace

ProjectMerge::ProjectMerge(Program &program)
    : m_program(program)
{
}

MergeResult ProjectMerge::merge(const MergeRequest &request, const Progress &progress)
{
    m_program.session.projectName = request.name;
    m_program.session.projectId = request.id;
    const NameClaim claim(m_program.files, NewProjectFolder(m_program).place());
    if (!ProjectCatalogue(m_program.session, m_program.files).bCheckQVSelectionforProdName())
        throw QvError(InvalidCall, {}, text(Text::ProjectAlreadyExists) + u": "_s + request.name);
    return MergeRun(m_program, request).work(progress);
}
