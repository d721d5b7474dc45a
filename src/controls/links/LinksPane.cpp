#include "controls/links/LinksPane.h"

#include "controls/books/PagePlaces.h"
#include "controls/parts/PlainLabel.h"
#include "controls/session/ProjectPages.h"
#include "platform/QvError.h"

#include <QAction>
#include <QLineEdit>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString wordFor(LinkState state)
{
    switch (state) {
    case LinkState::Good:
        return LinksPane::tr("Good");
    case LinkState::FileMissing:
        return LinksPane::tr("File missing");
    case LinkState::IsFolder:
        return LinksPane::tr("Leads to a folder");
    case LinkState::PlaceMissing:
        return LinksPane::tr("No such place");
    case LinkState::OtherLetterCase:
        return LinksPane::tr("Letter case");
    case LinkState::LeavesProject:
        return LinksPane::tr("Leaves the project");
    case LinkState::Elsewhere:
        return LinksPane::tr("Outside, not checked");
    }
    return {};
}

LinkMark markFor(LinkState state)
{
    switch (state) {
    case LinkState::Good:
        return LinkMark::Good;
    case LinkState::OtherLetterCase:
        return LinkMark::Warning;
    case LinkState::Elsewhere:
        return LinkMark::Unchecked;
    default:
        return LinkMark::Bad;
    }
}

QString textFor(const IndexedLink &link)
{
    switch (link.kind) {
    case PageReference::Kind::Resource:
        return LinksPane::tr("(picture or other part)");
    case PageReference::Kind::Style:
        return LinksPane::tr("(style sheet)");
    default:
        return link.text;
    }
}

QString withAnchor(const QString &path, const QString &anchor)
{
    return anchor.isEmpty() ? path : path + u'#' + anchor;
}

} // namespace

LinksPane::LinksPane(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_keyWords(plainLabel({}, this))
{
    setObjectName(u"LinksPane"_s);
    layOut();
    connect(&session, &ProjectSession::selectionChanged, this, &LinksPane::refreshLater);
    connect(&session, &ProjectSession::wasReset, this, &LinksPane::refreshLater);
    connect(&session, &ProjectSession::bookChanged, this, &LinksPane::refreshLater);
    connect(&session, &ProjectSession::quickNavChanged, this, &LinksPane::refreshLater);
    connect(&session.pages(), &ProjectPages::updated, this, &LinksPane::refreshLater);
}

void LinksPane::layOut()
{
    auto *layout = new QVBoxLayout(this);
    auto *filter = new QLineEdit(this);
    m_filter = filter;
    filter->setObjectName(u"txtLinkFilter"_s);
    filter->setAccessibleName(tr("Filter the links"));
    filter->setPlaceholderText(tr("Filter (Ctrl+F)"));
    filter->setClearButtonEnabled(true);
    layout->addWidget(filter);

    auto *lists = new QSplitter(Qt::Vertical, this);
    lists->setChildrenCollapsible(false);
    layOutList(m_in, u"lstLinksIn"_s, tr("Links to this page"), lists);
    layOutList(m_out, u"lstLinksOut"_s, tr("Links of this page"), lists);
    layout->addWidget(lists, 1);
    layout->addWidget(m_keyWords);

    for (RowTable *const table : {m_in.table, m_out.table})
        connect(filter, &QLineEdit::textChanged, table, &RowTable::setFilter);
    auto *find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    find->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(find, &QAction::triggered, filter, qOverload<>(&QWidget::setFocus));
    addAction(find);
    m_out.table->addCommand(tr("&Go to where it leads"), QKeySequence(Qt::CTRL | Qt::Key_Return),
                            [this] { followTarget(); });
}

void LinksPane::layOutList(List &list, const QString &objectName, const QString &name,
                           QWidget *parent)
{
    auto *box = new QWidget(parent);
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins({});
    list.heading = plainLabel({}, box);
    const QString first = &list == &m_in ? tr("Page") : tr("Leads to");
    list.table = new RowTable({{first, 38},
                               {tr("Line"), 7, TableColumn::Number},
                               {tr("Text"), 30},
                               {tr("State"), 0, TableColumn::State}},
                              box);
    list.table->setObjectName(objectName);
    list.table->setAccessibleName(name);
    layout->addWidget(list.heading);
    layout->addWidget(list.table, 1);
    connect(list.table, &RowTable::rowActivated, this, [this, &list](int row) { jump(list, row); });
}

void LinksPane::showEvent(QShowEvent *event)
{
    if (m_isStale)
        refresh();
    QWidget::showEvent(event);
}

/// Nobody looks at it most of the time.
void LinksPane::refreshLater()
{
    m_isStale = true;
    if (isVisible())
        refresh();
}

void LinksPane::refresh()
{
    m_isStale = false;
    for (List *const list : {&m_in, &m_out}) {
        list->rows.clear();
        list->places.clear();
    }
    m_keyWords->hide();
    QString problem;
    const auto book = m_session.currentBook();
    if (!book || m_session.currentPage().isEmpty())
        problem = tr("no page is chosen");
    else if (!m_session.pages().isReady())
        problem = tr("the pages are being read");
    else
        trap([&](const QvError &error) { problem = error.description(); },
             [&] {
                 if (const auto page = pageOfBook(m_session, *book, m_session.currentPage()))
                     listPage(*book, *page);
             });
    showLists(problem);
}

void LinksPane::listPage(const TocBook &book, const BookPage &page)
{
    const QString path = pathOfPage(m_session, book, page);
    listIn(path);
    listQuickNav(m_session.quickNav().views, {}, {book.acronym, page.id, {}, {}}, path);
    if (const IndexedPage *const indexed = m_session.pages().latest().page(path))
        listOut(*indexed);
    m_keyWords->setText(tr("Keywords: %1").arg(page.keyWords.join(u", "_s)));
    m_keyWords->setVisible(!page.keyWords.isEmpty());
}

void LinksPane::listIn(const QString &path)
{
    const PageIndex &index = m_session.pages().latest();
    for (const PageUse &use : index.usesOf(path)) {
        const IndexedPage &page = *index.page(use.page);
        add(m_in, page.path, page, page.links.at(use.link));
    }
}

void LinksPane::listQuickNav(const QList<QuickNavNode> &nodes, const QStringList &above,
                             const QuickNavLink &page, const QString &path)
{
    const PageIndex &index = m_session.pages().latest();
    for (const QuickNavNode &node : nodes) {
        const QStringList names = above + QStringList{node.name};
        for (const QuickNavLink &link : node.links) {
            if (link.book != page.book || link.page != page.page)
                continue;
            const IndexedPage *const target = index.page(path);
            const IndexedLink asLink{.target = target ? target->path : path, .anchor = link.anchor};
            const LinkState state = index.stateOf(asLink);
            m_in.rows.append({{tr("Quick navigation: %1").arg(names.join(u" > "_s)), QString(),
                               link.title, wordFor(state)},
                              markFor(state),
                              index.problemOf(asLink)});
            m_in.places.append({.page = {}, .quickNav = names});
        }
        listQuickNav(node.children, names, page, path);
    }
}

void LinksPane::listOut(const IndexedPage &page)
{
    for (const IndexedLink &link : page.links)
        add(m_out, withAnchor(link.target, link.anchor), page, link);
    for (const IndexedLink &link : page.outside)
        add(m_out, link.written, page, link);
}

void LinksPane::add(List &list, const QString &name, const IndexedPage &page,
                    const IndexedLink &link)
{
    const PageIndex &index = m_session.pages().latest();
    const LinkState state = index.stateOf(link);
    list.rows.append({{name, QString::number(link.line), textFor(link), wordFor(state)},
                      markFor(state),
                      index.problemOf(link)});
    list.places.append(
        {.page = page.path, .start = link.start, .length = link.length, .target = link.target});
}

void LinksPane::showLists(const QString &problem)
{
    for (List *const list : {&m_in, &m_out}) {
        const auto bad = std::count_if(list->rows.cbegin(), list->rows.cend(), [](const auto &row) {
            return row.mark == LinkMark::Bad || row.mark == LinkMark::Warning;
        });
        const QString name = list->table->accessibleName();
        list->heading->setText(
            !problem.isEmpty() ? tr("%1: %2").arg(name, problem)
            : bad == 0         ? tr("%1: %2").arg(name).arg(list->rows.size())
                       : tr("%1: %2, with problems: %3").arg(name).arg(list->rows.size()).arg(bad));
        list->table->setAccessibleDescription(list->heading->text());
        list->table->setRows(list->rows);
    }
}

void LinksPane::jump(const List &list, int row)
{
    const Place place = list.places.value(row);
    if (!place.page.isEmpty())
        Q_EMIT placeRequested(place.page, place.start, place.length);
    else if (!place.quickNav.isEmpty())
        Q_EMIT quickNavRequested(place.quickNav);
}

void LinksPane::followTarget()
{
    const Place place = m_out.places.value(m_out.table->currentRow());
    if (const IndexedPage *const page = m_session.pages().latest().page(place.target))
        Q_EMIT placeRequested(page->path, 0, 0);
}
