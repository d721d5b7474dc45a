#include "controls/QV_DeveloperTreeOCX.h"

#include "controls/parts/Handler.h"
#include "controls/tree/FilterBox.h"
#include "controls/tree/ProjectTreeModel.h"
#include "controls/tree/TreeCommands.h"
#include "controls/tree/TreeDelegate.h"
#include "controls/tree/TreeFilter.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QTreeView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

QV_DeveloperTreeOCX::QV_DeveloperTreeOCX(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_model(new ProjectTreeModel(session, this))
    , m_shown(new TreeFilter(*m_model, this))
    , m_commands(new TreeCommands(session, *m_model, this))
    , m_filter(new FilterBox(this))
    , tvwProject(new QTreeView(this))
    , m_state(*tvwProject, *m_model, *m_shown)
    , m_folder(session.folder())
{
    layOut();
    connectView();
    connectCommands();
    connectSession();
}

QV_DeveloperTreeOCX::~QV_DeveloperTreeOCX()
{
    remember();
}

void QV_DeveloperTreeOCX::layOut()
{
    tvwProject->setObjectName(u"tvwProject"_s);
    tvwProject->setAccessibleName(tr("Project tree"));
    tvwProject->setModel(m_shown);
    tvwProject->setItemDelegate(new TreeDelegate(tvwProject));
    tvwProject->setHeaderHidden(true);
    tvwProject->setTextElideMode(Qt::ElideMiddle); // twins differ at the end
    tvwProject->setUniformRowHeights(true);
    tvwProject->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tvwProject->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tvwProject->setContextMenuPolicy(Qt::CustomContextMenu);
    tvwProject->setDragDropMode(QAbstractItemView::DragDrop);
    tvwProject->setDefaultDropAction(Qt::MoveAction);
    tvwProject->setAutoExpandDelay(700);
    tvwProject->installEventFilter(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_filter);
    layout->addWidget(tvwProject);
    setFocusProxy(tvwProject);
}

void QV_DeveloperTreeOCX::connectView()
{
    connect(m_filter, &FilterBox::textChanged, this, &QV_DeveloperTreeOCX::filter);
    connect(m_filter, &FilterBox::left, this, &QV_DeveloperTreeOCX::leaveFilter);
    connect(m_shown, &TreeFilter::filtered, this, &QV_DeveloperTreeOCX::showFiltered);
    connect(tvwProject->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &QV_DeveloperTreeOCX::choiceChanged);
    connect(tvwProject, &QTreeView::activated, this,
            [this] { handled(m_session.program(), [this] { openCurrent(); }); });
    connect(tvwProject, &QTreeView::customContextMenuRequested, this,
            &QV_DeveloperTreeOCX::showMenu);
    connect(m_model, &ProjectTreeModel::badgesChanged, tvwProject->viewport(),
            qOverload<>(&QWidget::update));
    connect(m_model, &ProjectTreeModel::cutChanged, tvwProject->viewport(),
            qOverload<>(&QWidget::update));
    // The other side of the drag is let go before anything is asked.
    connect(m_model, &ProjectTreeModel::dropped, this, &QV_DeveloperTreeOCX::ask,
            Qt::QueuedConnection);
}

void QV_DeveloperTreeOCX::connectCommands()
{
    connect(m_commands, &TreeCommands::openRequested, this,
            [this] { handled(m_session.program(), [this] { openCurrent(); }); });
    connect(m_commands, &TreeCommands::refreshRequested, this,
            [this] { handled(m_session.program(), [this] { RefreshTree(); }); });
    connect(m_commands, &TreeCommands::findRequested, m_filter, &FilterBox::enter);
    connect(m_commands, &TreeCommands::expandRequested, this,
            [this] { m_state.expandBelow(current()); });
    connect(m_commands, &TreeCommands::collapseRequested, this, [this] {
        tvwProject->collapseAll();
        tvwProject->expandToDepth(0);
    });
    connect(m_commands, &TreeCommands::showRequested, this, [this](const QModelIndex &node) {
        showNode(node);
        handled(m_session.program(), [this] { openCurrent(); });
    });
}

void QV_DeveloperTreeOCX::connectSession()
{
    using Project = ProjectSession;
    connect(&m_session, &Project::wasReset, this, &QV_DeveloperTreeOCX::readAgain);
    connect(&m_session, &Project::booksChanged, this, [this] { rebuildSection(TreeKind::Books); });
    connect(&m_session, &Project::bookChanged, this, [this](const TocBook &book) {
        follow([&] { m_model->rebuild(m_model->find(book, {})); });
    });
    connect(&m_session, &Project::globalPagesChanged, this,
            [this] { rebuildSection(TreeKind::Globals); });
    connect(&m_session, &Project::quickNavChanged, this,
            [this] { rebuildSection(TreeKind::QuickNav); });
    connect(&m_session, &Project::selectionChanged, this, &QV_DeveloperTreeOCX::followSession);
}

QString QV_DeveloperTreeOCX::ProjectName() const
{
    return m_session.projectName();
}

void QV_DeveloperTreeOCX::setProjectName(const QString &name)
{
    m_session.open(name);
}

QString QV_DeveloperTreeOCX::BookName() const
{
    const TocBook *book = m_model->book(current());
    return book != nullptr ? book->name : QString();
}

QString QV_DeveloperTreeOCX::GlobalPageName() const
{
    const QModelIndex node = current();
    return m_model->kind(node) == TreeKind::GlobalPage ? m_model->name(node) : QString();
}

void QV_DeveloperTreeOCX::RefreshTree()
{
    m_session.reread();
}

void QV_DeveloperTreeOCX::DeleteQuickNavInfo()
{
    m_session.forgetQuickNav();
}

QModelIndex QV_DeveloperTreeOCX::current() const
{
    return m_shown->mapToSource(tvwProject->currentIndex());
}

// The current node comes first, whether it is marked or not.
QModelIndexList QV_DeveloperTreeOCX::chosen() const
{
    QModelIndexList nodes;
    if (current().isValid())
        nodes.append(current());
    for (const QModelIndex &shown : tvwProject->selectionModel()->selectedIndexes()) {
        const QModelIndex node = m_shown->mapToSource(shown);
        if (node != current())
            nodes.append(node);
    }
    return nodes;
}

void QV_DeveloperTreeOCX::readAgain()
{
    if (m_session.folder() == m_folder)
        follow([this] { m_model->rebuild(); });
    else
        changeProject();
}

void QV_DeveloperTreeOCX::changeProject()
{
    m_filter->clear();
    const QScopedValueRollback quiet(m_quiet, true);
    remember();
    // A project that was renamed has left its folder; its tree stays as it is.
    const bool isRenamed = !m_folder.isEmpty() && !m_session.folder().isEmpty()
                           && !m_session.program().files.folderExists(withoutBackslash(m_folder));
    const TreeState before = m_state.now();
    m_folder = m_session.folder();
    m_model->rebuild();
    tvwProject->expandToDepth(0);
    const TreeState state = isRenamed ? before : TreeMemory::recall(m_session.shownPath(m_folder));
    m_state.expand(state.expanded);
    chooseAgain(state.chosen);
    m_state.scrollTo(state.scrolled);
    // The editors go on where the author was, once all have heard of the project.
    if (!state.chosen.isEmpty())
        QMetaObject::invokeMethod(this, &QV_DeveloperTreeOCX::choiceChanged, Qt::QueuedConnection);
}

void QV_DeveloperTreeOCX::remember()
{
    if (m_folder.isEmpty())
        return;
    TreeState state = m_state.now();
    if (m_unfiltered)
        state = *m_unfiltered;
    TreeMemory::remember(m_session.shownPath(m_folder), state);
}

/// Does what changes rows of the tree; it keeps its place.
void QV_DeveloperTreeOCX::follow(const std::function<void()> &change)
{
    const QScopedValueRollback quiet(m_quiet, true);
    const TreeState before = m_state.now();
    change();
    if (m_shown->isFiltering())
        m_shown->refresh();
    tvwProject->expandToDepth(0);
    m_state.expand(before.expanded);
    chooseAgain(before.chosen);
    m_state.scrollTo(before.scrolled);
}

void QV_DeveloperTreeOCX::rebuildSection(TreeKind kind)
{
    follow([&] { m_model->rebuild(m_model->section(kind)); });
}

// A node that has gone leaves the selection on the nearest one above it; a renamed book keeps it.
void QV_DeveloperTreeOCX::chooseAgain(QStringList place)
{
    const bool wasInBook = place.size() > 2 && place.at(1) == u"books"_s;
    while (!place.isEmpty() && !m_model->find(place).isValid())
        place.removeLast();
    const QModelIndex node = place.isEmpty() ? m_model->index(0, 0) : m_model->find(place);
    tvwProject->setCurrentIndex(m_shown->mapFromSource(node));
    if (wasInBook)
        followSession();
}

void QV_DeveloperTreeOCX::showNode(const QModelIndex &node)
{
    const QModelIndex shown = m_shown->mapFromSource(node);
    if (!shown.isValid())
        return;
    tvwProject->setCurrentIndex(shown);
    tvwProject->scrollTo(shown);
}

void QV_DeveloperTreeOCX::followSession()
{
    const auto &book = m_session.currentBook();
    if (!book)
        return;
    const QModelIndex node = current();
    const TocBook *chosen = m_model->book(node);
    if (chosen != nullptr && *chosen == *book && m_model->pageId(node) == m_session.currentPage())
        return;
    const QScopedValueRollback quiet(m_quiet, true);
    showNode(m_model->find(*book, m_session.currentPage()));
}

void QV_DeveloperTreeOCX::filter(const QString &text)
{
    const QScopedValueRollback quiet(m_quiet, true);
    if (!m_shown->isFiltering() && !text.isEmpty())
        m_unfiltered = m_state.now();
    m_shown->setText(text);
}

void QV_DeveloperTreeOCX::showFiltered()
{
    const QScopedValueRollback quiet(m_quiet, true);
    if (!m_shown->isFiltering()) {
        m_filter->say({});
        const TreeState before = std::exchange(m_unfiltered, {}).value_or(TreeState());
        tvwProject->collapseAll();
        tvwProject->expandToDepth(0);
        m_state.expand(before.expanded);
        chooseAgain(before.chosen);
        m_state.scrollTo(before.scrolled);
        showNode(current());
        return;
    }
    tvwProject->expandToDepth(0);
    m_state.expandMatches();
    if (m_unfiltered)
        tvwProject->setCurrentIndex(m_shown->mapFromSource(m_model->find(m_unfiltered->chosen)));
    const int matches = m_shown->matches();
    const QString count = matches == 0   ? tr("No match")
                          : matches == 1 ? tr("1 match")
                                         : tr("%1 matches").arg(matches);
    m_filter->say(m_shown->isReading() ? tr("%1, still looking...").arg(count) : count);
}

void QV_DeveloperTreeOCX::leaveFilter()
{
    tvwProject->setFocus();
    if (!current().isValid() && m_shown->isFiltering())
        tvwProject->setCurrentIndex(m_state.firstMatch());
}

void QV_DeveloperTreeOCX::choiceChanged()
{
    // Choosing more than one node opens none of them.
    const bool isMarking =
        QGuiApplication::keyboardModifiers().testAnyFlags(Qt::ShiftModifier | Qt::ControlModifier);
    if (m_quiet || (isMarking && tvwProject->hasFocus()))
        return;
    if (m_unfiltered && current().isValid())
        m_unfiltered->chosen = m_model->place(current());
    handled(m_session.program(), [this] { tellChoice(); });
}

void QV_DeveloperTreeOCX::tellChoice()
{
    const QModelIndex node = current();
    if (!node.isValid())
        return;
    switch (m_model->kind(node)) {
    case TreeKind::Project:
    case TreeKind::Globals:
        Q_EMIT EvtEnableGlobalsTab();
        break;
    case TreeKind::GlobalPage:
        Q_EMIT evtGlobalPageName();
        break;
    case TreeKind::Book:
    case TreeKind::Page:
        // When the page that is open cannot be left, the tree goes back to it.
        if (!m_session.select(*m_model->book(node), m_model->pageId(node)))
            QMetaObject::invokeMethod(this, &QV_DeveloperTreeOCX::followSession,
                                      Qt::QueuedConnection);
        else
            Q_EMIT evtDisplayBookName();
        break;
    case TreeKind::Books:
    case TreeKind::Problem:
        break;
    default:
        tellQuickNav(node);
    }
}

void QV_DeveloperTreeOCX::tellQuickNav(const QModelIndex &node)
{
    QStringList names = m_model->quickNavNames(node);
    const int level = static_cast<int>(names.size());
    names.resize(4);
    Q_EMIT evtQVTreeQuickNavInfo(m_session.projectName(), names.at(0), names.at(1), names.at(2),
                                 names.at(3), level);
}

void QV_DeveloperTreeOCX::openCurrent()
{
    tellChoice();
    const QModelIndex node = current();
    if (m_model->book(node) != nullptr)
        Q_EMIT m_session.openRequested();
    else if (m_model->kind(node) >= TreeKind::QuickNav && m_model->kind(node) <= TreeKind::Category)
        Q_EMIT quickNavWanted();
}

void QV_DeveloperTreeOCX::ask(const ProjectRequest &request)
{
    handled(m_session.program(), [&] { Q_EMIT m_session.requested(request); });
}

void QV_DeveloperTreeOCX::showMenu(const QPoint &at)
{
    QMenu menu;
    m_commands->setChosen(chosen());
    m_commands->fill(menu);
    menu.exec(tvwProject->viewport()->mapToGlobal(at));
}

bool QV_DeveloperTreeOCX::event(QEvent *event)
{
    // Back from another program: somebody may have changed the files meanwhile.
    if (event->type() == QEvent::WindowActivate)
        QMetaObject::invokeMethod(
            this, [this] { handled(m_session.program(), [this] { m_session.noticeChanges(); }); },
            Qt::QueuedConnection);
    return QWidget::event(event);
}

void QV_DeveloperTreeOCX::hideEvent(QHideEvent *event)
{
    remember();
    QWidget::hideEvent(event);
}

bool QV_DeveloperTreeOCX::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != tvwProject
        || (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride))
        return QWidget::eventFilter(watched, event);
    const auto &key = *static_cast<QKeyEvent *>(event);
    if (!TreeCommands::isCommandKey(key))
        return QWidget::eventFilter(watched, event);
    m_commands->setChosen(chosen());
    if (event->type() == QEvent::KeyPress)
        return m_commands->obey(key);
    event->accept(); // the tree's own, whatever the window does with that key
    return true;
}
