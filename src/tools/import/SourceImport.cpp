#include "tools/import/SourceImport.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/changes/StagedFiles.h"
#include "tools/Checksum.h"
#include "tools/ReferenceRewriter.h"
#include "tools/html/HtmlScan.h"
#include "tools/import/BaseFolder.h"
#include "tools/import/ImportFiles.h"
#include "tools/import/ImportOutline.h"
#include "tools/import/ImportPlanner.h"
#include "tools/import/ImportSources.h"

#include <QHash>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// What renaming adds to a name: "-2".
QString addedTo(const ImportItem &item)
{
    const auto at =
        std::mismatch(item.target.begin(), item.target.end(), item.renamed.begin()).second;
    return item.renamed.sliced(at - item.renamed.begin(), item.renamed.size() - item.target.size());
}

/// One run of an import.
class ImportRun final
{
public:
    ImportRun(FileSystem &files, const ImportPlan &plan, QString language, ImportFiles &onTheWay)
        : m_files(files)
        , m_plan(plan)
        , m_language(std::move(language))
        , m_onTheWay(onTheWay)
        , m_taken(takenItems(plan))
    {
        for (int i = 0; i < plan.items.size(); ++i) {
            const ImportItem &item = plan.items[i];
            if (m_taken[i] && item.isMade())
                m_made.insert(nameOf(item), &item);
            else if (m_taken[i] && item.action == ImportAction::Rename)
                m_renamed.insert(nameOf(item), &item);
        }
    }

    ImportResult result;

    void stage(const Progress &progress)
    {
        const int total = static_cast<int>(m_taken.count(true));
        int done = 0;
        for (int i = 0; i < m_plan.items.size(); ++i) {
            if (!m_taken[i])
                continue;
            progress.step(done++, total, m_plan.items[i].destination());
            if (m_plan.items[i].action != ImportAction::KeepSame)
                stage(i);
        }
        progress.step(total, total);
    }

    /// Lists the pages in the book, with their sources.
    void list(Book &book)
    {
        QList<const ImportItem *> pages;
        for (int i = 0; i < m_plan.items.size(); ++i) {
            if (m_taken[i] && m_plan.items[i].isPage())
                pages.append(&m_plan.items[i]);
        }
        keepPageSums(book);
        addToOutline(book, pages);
        noteSources(book, m_plan, m_taken, m_pageSums);
        for (const ImportItem *page : pages)
            result.pages.append(page->destination());
    }

    /// What renaming meant for the files that were copied.
    void noteRenaming()
    {
        if (m_adapted > 0)
            result.notes.append(
                u"Links to renamed files were changed in %1 of the added files."_s.arg(m_adapted));
        if (!m_unchanged.isEmpty())
            result.notes.append(u"Links to renamed files could not be changed, because bytes in "
                                "them are no text: %1"_s.arg(m_unchanged.join(u", ")));
    }

private:
    void stage(int index)
    {
        const ImportItem &item = m_plan.items[index];
        std::optional<QByteArray> content;
        if (item.isMade())
            content = made(item);
        else if (usesRenamed(item))
            content = adapted(item);
        ++result.copied;
        if (!content) {
            m_onTheWay.stageCopy(item);
            return;
        }
        m_onTheWay.stageContent(item, *content);
        m_pageSums.insert(index, checksumText(*content));
    }

    bool usesRenamed(const ImportItem &item) const
    {
        return std::any_of(item.uses.begin(), item.uses.end(), [this](int used) {
            return m_taken[used] && m_plan.items[used].action == ImportAction::Rename;
        });
    }

    /// The bytes of a page or style sheet with its links to renamed files changed; nothing when
    /// other bytes would change with them.
    std::optional<QByteArray> adapted(const ImportItem &item)
    {
        const QByteArray bytes = m_files.readFile(item.source);
        const PageText page = decodePage(bytes, m_language);
        if (page.damaged || encodePage(page.text, page.encoding) != bytes) {
            m_unchanged.append(item.destination());
            return std::nullopt;
        }
        const HtmlFacts facts = item.isPage() ? scanHtml(page.text) : HtmlFacts();
        const auto start = baseFolder(item.source, page.text, facts);
        const auto suffix = [&](const QString &path) {
            const ImportItem *renamed = start ? m_renamed.value(referred(*start, path)) : nullptr;
            return renamed ? addedTo(*renamed) : QString();
        };
        ++m_adapted;
        return encodePage(withSuffixedNames(page.text,
                                            item.isPage() ? facts.references : scanCss(page.text),
                                            suffix),
                          page.encoding);
    }

    /// The page made of a text, a table or a Markdown file, whose links to files that become pages
    /// lead to these.
    QByteArray made(const ImportItem &item)
    {
        const PageText source = decodePage(m_files.readFile(item.source), m_language);
        const QString page = wholePage(
            convertedPage(item.format, source.text, lastComponent(item.source)), m_language);
        if (item.format != ImportFormat::Markdown)
            return page.toUtf8();
        const HtmlFacts facts = scanHtml(page);
        const auto start = baseFolder(item.source, page, facts);
        const auto newName = [&](const QString &path) {
            const QString file = start ? referred(*start, path) : QString();
            const ImportItem *target = m_made.value(file, m_renamed.value(file));
            return target ? lastComponent(target->destination()) : QString();
        };
        return withRenamedFolders(page, facts.references, newName).toUtf8();
    }

    /// What a reference means, for comparing.
    static QString referred(const QString &start, const QString &path)
    {
        return joined(start, path).value_or(QString()).toCaseFolded();
    }

    static QString nameOf(const ImportItem &item)
    {
        return referred({}, QString(item.source).replace(u'\\', u'/'));
    }

    /// A page that is there already has the checksum noted when it was made.
    void keepPageSums(const Book &book)
    {
        QHash<QString, QString> known;
        for (const BookSource &source : book.sources)
            known.insert(source.page.toCaseFolded(), source.pageSum);
        for (int i = 0; i < m_plan.items.size(); ++i) {
            const ImportItem &item = m_plan.items[i];
            if (item.isMade() && item.action == ImportAction::KeepSame)
                m_pageSums.insert(i, known.value(item.target.toCaseFolded()).toLatin1());
        }
    }

    FileSystem &m_files;
    const ImportPlan &m_plan;
    QString m_language;
    ImportFiles &m_onTheWay;
    QList<bool> m_taken;
    int m_adapted = 0;
    QStringList m_unchanged;
    QHash<int, QByteArray> m_pageSums;
    QHash<QString, const ImportItem *> m_made, m_renamed; ///< by source, without case
};

void refuseNothing(const ImportPlan &plan)
{
    if (!takenItems(plan).contains(true))
        throw QvError(InvalidCall, {}, u"Nothing is chosen to be added."_s);
}

} // namespace

SourceImport::SourceImport(Session &session, FileSystem &files)
    : m_session(session)
    , m_files(files)
{
}

ImportPlan SourceImport::plan(const QString &project, const TocBook &book,
                              const QStringList &picked, const Progress &progress)
{
    return planned({.command = ImportCommand::SourceFiles, .project = project, .book = book},
                   picked, {}, progress);
}

ImportPlan SourceImport::planImport(const QString &project, const TocBook &book,
                                    const QStringList &picked, const QString &scratch,
                                    const Progress &progress)
{
    return planned({.command = ImportCommand::ImportFiles, .project = project, .book = book},
                   picked, scratch, progress);
}

ImportPlan SourceImport::planNewer(const QString &project, const TocBook &book,
                                   const QString &scratch, const Progress &progress)
{
    return planned({.command = ImportCommand::NewerFiles, .project = project, .book = book}, {},
                   scratch, progress);
}

ImportPlan SourceImport::planned(ImportPlan plan, const QStringList &picked, const QString &scratch,
                                 const Progress &progress)
{
    BookFile bookFile(m_session, m_files);
    const Book book = bookFile.read(plan.project, plan.book);
    ImportPlanner(m_files, bookFile.folder(plan.project, plan.book), m_session.projectLanguage,
                  scratch, progress)
        .work(plan, picked, book.sources);
    return plan;
}

ImportResult SourceImport::stage(const ImportPlan &plan, const QString &fresh,
                                 const Progress &progress)
{
    refuseNothing(plan);
    const QString project = projectFolder(m_session.serverPath, plan.project);
    StagedFiles staged(m_files, project);
    staged.allowLocked(); // the author is asked about the book's file before it is written
    BookFile bookFile(m_session, staged);
    Book book = bookFile.read(plan.project, plan.book); // fail before anything is copied
    ImportFiles onTheWay(m_files, project, bookFile.folder(plan.project, plan.book), fresh);
    ImportRun run(m_files, plan, m_session.projectLanguage, onTheWay);
    try {
        run.stage(progress);
        run.result.changes.steps = onTheWay.steps();
        if (!plan.dateChanged.isEmpty())
            book.dateChanged = plan.dateChanged;
        run.list(book);
        bookFile.write(plan.project, plan.book, book);
    } catch (...) {
        onTheWay.discard();
        throw;
    }
    run.noteRenaming();
    run.result.replaced = onTheWay.replaced();
    run.result.changes.steps += staged.changes().steps;
    run.result.changes.expected = staged.changes().expected;
    return run.result;
}
