#include "tools/SourceImport.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/HtmlScan.h"
#include "tools/ImportFiles.h"
#include "tools/ImportOutline.h"
#include "tools/ImportPlanner.h"
#include "tools/ReferenceRewriter.h"

#include <QHash>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// The path that a reference in the file `source` means, for comparing.
QString referredPath(const QString &source, const QString &path)
{
    return joined(parentFolder(source), path).value_or(QString()).toCaseFolded();
}

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
            if (m_taken[i] && plan.items[i].action == ImportAction::Rename)
                m_renamed.insert(
                    referredPath({}, QString(plan.items[i].source).replace(u'\\', u'/')),
                    &plan.items[i]);
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
                stage(m_plan.items[i]);
        }
        progress.step(total, total);
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

    QList<const ImportItem *> pages() const
    {
        QList<const ImportItem *> pages;
        for (int i = 0; i < m_plan.items.size(); ++i) {
            if (m_taken[i] && m_plan.items[i].isPage())
                pages.append(&m_plan.items[i]);
        }
        return pages;
    }

private:
    void stage(const ImportItem &item)
    {
        const auto content = usesRenamed(item) ? adapted(item) : std::nullopt;
        if (content)
            m_onTheWay.stageContent(item, *content);
        else
            m_onTheWay.stageCopy(item);
        ++result.copied;
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
        const QList<PageReference> references =
            item.isPage() ? scanHtml(page.text).references : scanCss(page.text);
        const auto suffix = [&](const QString &path) {
            const ImportItem *renamed = m_renamed.value(referredPath(item.source, path));
            return renamed ? addedTo(*renamed) : QString();
        };
        ++m_adapted;
        return encodePage(withSuffixedNames(page.text, references, suffix), page.encoding);
    }

    FileSystem &m_files;
    const ImportPlan &m_plan;
    QString m_language;
    ImportFiles &m_onTheWay;
    QList<bool> m_taken;
    int m_adapted = 0;
    QStringList m_unchanged;
    QHash<QString, const ImportItem *> m_renamed; ///< by the path that references to it mean
};

void refuseNothing(const ImportPlan &plan)
{
    const QList<bool> taken = takenItems(plan);
    if (!taken.contains(true))
        throw QvError(InvalidCall, {}, u"Nothing is chosen to be added."_s);
}

/// Whether the book on disk lists the pages of `book`, or cannot be asked.
bool mayList(BookFile &bookFile, const ImportPlan &plan, const Book &book) noexcept
{
    try {
        const auto files = [](const QList<BookPage> &pages) {
            QStringList names;
            for (const BookPage &page : flattened(pages))
                names.append(page.file);
            return names;
        };
        return files(bookFile.read(plan.project, plan.book).pages) == files(book.pages);
    } catch (...) {
        return true;
    }
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
    BookFile bookFile(m_session, m_files);
    (void)bookFile.read(project, book); // an unreadable book is told before anything is chosen
    ImportPlan plan{project, book, {}, {}, {}};
    ImportPlanner(m_files, bookFile.folder(project, book), m_session.projectLanguage, progress)
        .work(plan, picked);
    return plan;
}

ImportResult SourceImport::run(const ImportPlan &plan, const Progress &progress)
{
    refuseNothing(plan);
    BookFile bookFile(m_session, m_files);
    (void)bookFile.read(plan.project, plan.book); // fail before anything is copied
    ImportFiles onTheWay(m_files, projectFolder(m_session.serverPath, plan.project),
                         bookFile.folder(plan.project, plan.book));
    ImportRun run(m_files, plan, m_session.projectLanguage, onTheWay);
    std::optional<Book> written;
    try {
        run.stage(progress);
        run.result.replaced = onTheWay.putInPlace();
        Book book = bookFile.read(plan.project, plan.book);
        if (!plan.dateChanged.isEmpty())
            book.dateChanged = plan.dateChanged;
        addToOutline(book, run.pages());
        written = book;
        bookFile.write(plan.project, plan.book, book);
    } catch (...) {
        // The book may be written and only not be flushed: what it lists must stay.
        if (!written || !mayList(bookFile, plan, *written))
            onTheWay.undo();
        throw;
    }
    run.noteRenaming();
    for (const ImportItem *page : run.pages())
        run.result.pages.append(page->destination());
    const auto note = [&](const QvError &error) { run.result.notes.append(error.description()); };
    trap(note, [&] { onTheWay.finish(); });
    return run.result;
}
