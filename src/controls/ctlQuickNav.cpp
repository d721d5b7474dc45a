#include "controls/ctlQuickNav.h"

#include "controls/parts/Handler.h"
#include "controls/session/ProjectSession.h"
#include "platform/FileSystem.h"
#include "resources/Icons.h"
#include "startup/Session.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr std::array iconNames{"quicknav-view"_L1, "quicknav-group"_L1, "quicknav-topic"_L1,
                               "quicknav-category"_L1};

const TocBook *bookOf(const QList<TocBook> &books, const QuickNavLink &link)
{
    const auto found = std::find_if(books.cbegin(), books.cend(), [&](const TocBook &book) {
        return book.acronym.compare(link.book, Qt::CaseInsensitive) == 0;
    });
    return found == books.cend() ? nullptr : &*found;
}
} // namespace

ctlQuickNav::ctlQuickNav(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_problem(new QLabel(this))
    , tvwLinks(new QTreeWidget(this))
{
    layOut();
    for (size_t column = 0; column < columnCount; ++column) {
        connect(m_columns.at(column), &QListWidget::currentRowChanged, this, [this, column] {
            if (column + 1 < columnCount)
                fill(column + 1);
            else
                showLinks();
        });
    }
    connect(tvwLinks, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem *item) { openLink(tvwLinks->indexOfTopLevelItem(item)); });
    connect(&m_session, &ProjectSession::wasReset, this, &ctlQuickNav::showQuickNav);
    connect(&m_session, &ProjectSession::quickNavChanged, this, &ctlQuickNav::showQuickNav);
    connect(&m_session, &ProjectSession::booksChanged, this, &ctlQuickNav::showLinks);
    connect(&m_session, &ProjectSession::bookChanged, this, &ctlQuickNav::showLinks);
    showQuickNav();
}

void ctlQuickNav::layOut()
{
    const QStringList headings{tr("&Views"), tr("&Groups"), tr("&Topics"), tr("&Categories")};
    const QStringList objectNames{u"lstViews"_s, u"lstGroups"_s, u"lstTopics"_s,
                                  u"lstCategories"_s};
    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize);
    auto *upper = new QWidget(this);
    auto *grid = new QGridLayout(upper);
    grid->setContentsMargins({});
    for (size_t column = 0; column < columnCount; ++column) {
        const auto at = static_cast<int>(column);
        auto *list = new QListWidget(upper);
        list->setObjectName(objectNames.at(at));
        list->setAccessibleName(QString(headings.at(at)).remove(u'&'));
        list->setIconSize({iconSize, iconSize});
        auto *heading = new QLabel(headings.at(at), upper);
        heading->setBuddy(list);
        grid->addWidget(heading, 0, at);
        grid->addWidget(list, 1, at);
        m_columns.at(column) = list;
    }
    tvwLinks->setObjectName(u"tvwLinks"_s);
    tvwLinks->setAccessibleName(tr("Links of the category"));
    tvwLinks->setHeaderLabels({tr("Link"), tr("Book"), tr("Page"), tr("Problem")});
    tvwLinks->setRootIsDecorated(false);
    tvwLinks->setUniformRowHeights(true);
    tvwLinks->header()->setStretchLastSection(false);
    tvwLinks->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_problem->setObjectName(u"lblQuickNavProblem"_s);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);

    auto *both = new QSplitter(Qt::Vertical, this);
    both->setObjectName(u"splQuickNav"_s);
    both->addWidget(upper);
    both->addWidget(tvwLinks);
    both->setChildrenCollapsible(false);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_problem);
    layout->addWidget(both, 1);
}

void ctlQuickNav::setProjectName(const QString &name)
{
    m_session.open(name);
}

void ctlQuickNav::showQuickNav()
{
    QStringList names; // what was chosen, to choose it again
    for (const QListWidget *list : m_columns)
        names.append(list->currentItem() != nullptr ? list->currentItem()->text() : QString());
    m_views.clear();
    m_problem->hide();
    const auto showProblem = [this](const QvError &error) {
        m_problem->setText(u"\u26A0 "_s + error.description());
        m_problem->show();
    };
    trap(showProblem, [this] {
        if (!m_session.projectName().isEmpty())
            m_views = m_session.quickNav().views;
    });
    fill(0);
    for (size_t column = 0; column < columnCount; ++column)
        choose(column, names.at(static_cast<qsizetype>(column)));
}

const QList<QuickNavNode> *ctlQuickNav::nodesOf(size_t column) const
{
    if (column == 0)
        return &m_views;
    const QuickNavNode *above = chosen(column - 1);
    return above != nullptr ? &above->children : nullptr;
}

const QuickNavNode *ctlQuickNav::chosen(size_t column) const
{
    const QList<QuickNavNode> *nodes = nodesOf(column);
    const int row = m_columns.at(column)->currentRow();
    return nodes != nullptr && row >= 0 && row < nodes->size() ? &nodes->at(row) : nullptr;
}

// Fills one column and with it empties those to its right.
void ctlQuickNav::fill(size_t column)
{
    QListWidget *list = m_columns.at(column);
    const QSignalBlocker quiet(list);
    list->clear();
    if (const QList<QuickNavNode> *nodes = nodesOf(column)) {
        const QIcon nodeIcon = icon(iconNames.at(column));
        for (const QuickNavNode &node : *nodes)
            list->addItem(new QListWidgetItem(nodeIcon, node.name));
    }
    list->setCurrentRow(-1);
    if (column + 1 < columnCount)
        fill(column + 1);
    else
        showLinks();
}

void ctlQuickNav::choose(size_t column, const QString &name)
{
    const QList<QListWidgetItem *> found =
        name.isEmpty() ? QList<QListWidgetItem *>()
                       : m_columns.at(column)->findItems(name, Qt::MatchExactly);
    m_columns.at(column)->setCurrentItem(found.isEmpty() ? nullptr : found.first());
}

void ctlQuickNav::LoadQuickNavInfo(QString &project, QString &view, QString &group, QString &topic,
                                   QString &category, int &level)
{
    if (project != m_session.projectName())
        return;
    const std::array names{view, group, topic, category};
    for (size_t column = 0; column < columnCount; ++column)
        choose(column, static_cast<int>(column) < level ? names.at(column) : QString());
}

void ctlQuickNav::SelectQuickNavCategory(const QString &name)
{
    choose(columnCount - 1, name);
}

void ctlQuickNav::ResetQuickNavView()
{
    choose(columnCount - 1, {});
}

void ctlQuickNav::showLinks()
{
    tvwLinks->clear();
    const QuickNavNode *category = chosen(columnCount - 1);
    if (category == nullptr)
        return;
    for (const QuickNavLink &link : category->links) {
        const QString problem = problemOf(link);
        const QString page = link.anchor.isEmpty() ? link.page : link.page + u'#' + link.anchor;
        auto *item = new QTreeWidgetItem(
            tvwLinks, {link.title.isEmpty() ? page : link.title, link.book, page, problem});
        item->setIcon(0, icon(problem.isEmpty() ? "link"_L1 : "page-missing"_L1));
    }
}

QString ctlQuickNav::problemOf(const QuickNavLink &link)
{
    const TocBook *book = bookOf(m_session.books(), link);
    if (book == nullptr)
        return tr("no such book");
    QString problem = tr("no such page");
    trap([&](const QvError &error) { problem = error.description(); },
         [&] {
             for (const BookPage &page : flattened(m_session.book(*book).pages)) {
                 if (page.id != link.page)
                     continue;
                 Program &program = m_session.program();
                 const QString path = BookFile(program.session, program.files)
                                          .pagePath(m_session.projectName(), *book, page.file);
                 problem = program.files.fileExists(path) ? QString() : tr("file missing");
             }
         });
    return problem;
}

void ctlQuickNav::openLink(int row)
{
    const QuickNavNode *category = chosen(columnCount - 1);
    if (category == nullptr || row < 0 || row >= category->links.size())
        return;
    const QuickNavLink link = category->links.at(row);
    const TocBook *book = bookOf(m_session.books(), link);
    if (book != nullptr && m_session.select(*book, link.page))
        Q_EMIT m_session.openRequested();
}
