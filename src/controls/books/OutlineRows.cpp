#include "controls/books/OutlineRows.h"

#include "controls/books/OutlineTree.h"
#include "controls/books/PagePlaces.h"
#include "controls/session/ProjectPages.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "resources/Icons.h"
#include "startup/Session.h"

#include <QTreeWidgetItemIterator>

using namespace Qt::StringLiterals;

namespace {
/// What is known of a page's file without reading it.
enum FileState { Good, Locked, Twice, Missing };
constexpr int stateRole = OutlineTree::TitleRole + 1;

QString comparable(const QString &file)
{
    return QString(file).replace(u'/', u'\\').toCaseFolded();
}

QSet<QString> listedTwice(const QList<BookPage> &pages)
{
    QSet<QString> seen, twice;
    for (const BookPage &page : flattened(pages)) {
        const QString file = comparable(page.file);
        if (seen.contains(file))
            twice.insert(file);
        seen.insert(file);
    }
    return twice;
}

QString contextsOf(const BookPage &page)
{
    QStringList names;
    for (const ContextId &id : page.contextIds)
        names.append(id.name);
    return names.join(u", "_s);
}
} // namespace

OutlineRows::OutlineRows(ProjectSession &session, OutlineTree *tree)
    : m_session(session)
    , m_tree(tree)
{
}

void OutlineRows::fill(const TocBook &book, const QSet<QString> &folded)
{
    const QList<BookPage> pages = m_session.book(book).pages;
    add(m_tree->invisibleRootItem(), pages, {book, filesOf(book), listedTwice(pages)});
    showProblems();
    for (QTreeWidgetItemIterator at(m_tree); *at != nullptr; ++at)
        (*at)->setExpanded(!folded.contains(
            (*at)->data(OutlineTree::TitleColumn, OutlineTree::IdRole).toString()));
}

// One walk over the folder instead of a look for each page.
OutlineRows::Files OutlineRows::filesOf(const TocBook &book) const
{
    FileSystem &files = m_session.program().files;
    const QString folder =
        BookFile(m_session.program().session, files).folder(m_session.projectName(), book);
    Files found;
    walkTree(files, withoutBackslash(folder), [&](const TreeEntry &entry) {
        if (entry.status.kind == FileKind::File)
            found.insert(comparable(entry.relative), entry.status.readOnly);
    });
    return found;
}

void OutlineRows::add(QTreeWidgetItem *parent, const QList<BookPage> &pages, const Book &book)
{
    const QIcon pictures[]{icon("page"_L1), icon("lock"_L1), icon("page"_L1),
                           icon("page-missing"_L1)};
    for (const BookPage &page : pages) {
        const QString file = comparable(page.file);
        const FileState state = !book.files.contains(file)  ? Missing
                                : book.twice.contains(file) ? Twice
                                : book.files.value(file)    ? Locked
                                                            : Good;
        const QString title = page.title.isEmpty() ? page.file : page.title;
        auto *item = new QTreeWidgetItem(parent, {title, page.file, contextsOf(page)});
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setIcon(OutlineTree::TitleColumn, pictures[state]);
        item->setData(OutlineTree::TitleColumn, OutlineTree::IdRole, page.id);
        item->setData(OutlineTree::TitleColumn, OutlineTree::TitleRole, page.title);
        item->setData(OutlineTree::TitleColumn, OutlineTree::PathRole,
                      pathOfPage(m_session, book.entry, page));
        item->setData(OutlineTree::TitleColumn, stateRole, state);
        for (int column = 0; column < OutlineTree::ProblemColumn; ++column)
            item->setToolTip(column, item->text(column));
        add(item, page.pages, book);
    }
}

void OutlineRows::showProblems()
{
    for (QTreeWidgetItemIterator at(m_tree); *at != nullptr; ++at)
        showProblem(*at);
}

void OutlineRows::showProblem(QTreeWidgetItem *item)
{
    const QString path = item->data(OutlineTree::TitleColumn, OutlineTree::PathRole).toString();
    QStringList problems;
    switch (item->data(OutlineTree::TitleColumn, stateRole).toInt()) {
    case Missing:
        problems.append(OutlineTree::tr("file missing"));
        break;
    case Twice:
        problems.append(OutlineTree::tr("file listed twice"));
        break;
    case Locked:
        problems.append(OutlineTree::tr("locked"));
        break;
    default:
        break;
    }
    if (const int broken = m_session.pages().latest().problemsIn(path); broken > 0)
        problems.append(broken == 1 ? OutlineTree::tr("1 broken link")
                                    : OutlineTree::tr("%1 broken links").arg(broken));
    const QString says = problems.join(u", "_s);
    item->setText(OutlineTree::ProblemColumn, says);
    item->setToolTip(OutlineTree::ProblemColumn, says);
    const QString title = item->text(OutlineTree::TitleColumn);
    item->setData(OutlineTree::TitleColumn, Qt::AccessibleTextRole,
                  says.isEmpty() ? title : u"%1, %2"_s.arg(title, says));
}

// A page is shown when it fits, and so are those above it.
void OutlineRows::filter(const QString &text)
{
    const QString wanted = text.trimmed();
    for (QTreeWidgetItemIterator at(m_tree); *at != nullptr; ++at) {
        bool fits = false;
        for (int column = 0; column < m_tree->columnCount(); ++column)
            fits = fits || (*at)->text(column).contains(wanted, Qt::CaseInsensitive);
        (*at)->setHidden(!fits);
        for (QTreeWidgetItem *above = (*at)->parent(); fits && above != nullptr;
             above = above->parent())
            above->setHidden(false);
    }
}
