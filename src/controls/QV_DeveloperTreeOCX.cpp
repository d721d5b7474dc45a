#include "controls/QV_DeveloperTreeOCX.h"

#include "controls/parts/Handler.h"
#include "controls/tree/ProjectTreeModel.h"
#include "resources/Icons.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

QV_DeveloperTreeOCX::QV_DeveloperTreeOCX(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_model(new ProjectTreeModel(session, this))
    , m_shown(new QSortFilterProxyModel(this))
    , txtFilter(new QLineEdit(this))
    , tvwProject(new QTreeView(this))
{
    layOut();
    connectAll();
}

void QV_DeveloperTreeOCX::layOut()
{
    m_shown->setSourceModel(m_model);
    m_shown->setFilterRole(ProjectTreeModel::FilterRole);
    m_shown->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_shown->setRecursiveFilteringEnabled(true);
    m_shown->setAutoAcceptChildRows(true);

    txtFilter->setObjectName(u"txtFilter"_s);
    txtFilter->setPlaceholderText(tr("Filter"));
    txtFilter->setClearButtonEnabled(true);
    txtFilter->setAccessibleName(tr("Filter of the project tree"));
    txtFilter->setToolTip(tr("Shows books, and pages of the books opened so far (Ctrl+F)"));

    tvwProject->setObjectName(u"tvwProject"_s);
    tvwProject->setAccessibleName(tr("Project tree"));
    tvwProject->setModel(m_shown);
    tvwProject->setHeaderHidden(true);
    tvwProject->setTextElideMode(Qt::ElideMiddle); // twins differ at the end
    tvwProject->setUniformRowHeights(true);
    tvwProject->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tvwProject->setContextMenuPolicy(Qt::CustomContextMenu);
    tvwProject->installEventFilter(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(txtFilter);
    layout->addWidget(tvwProject);
    setFocusProxy(tvwProject);
}

void QV_DeveloperTreeOCX::connectAll()
{
    connect(txtFilter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_shown->setFilterFixedString(text.trimmed());
        tvwProject->expandToDepth(text.trimmed().isEmpty() ? 0 : 1);
        showNode(current());
    });
    connect(tvwProject->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        if (!m_quiet)
            handled(m_session.program(), [this] { tellChoice(); });
    });
    connect(tvwProject, &QTreeView::activated, this,
            [this] { handled(m_session.program(), [this] { openCurrent(); }); });
    connect(tvwProject, &QTreeView::customContextMenuRequested, this,
            &QV_DeveloperTreeOCX::showMenu);
    connect(&m_session, &ProjectSession::wasReset, this, &QV_DeveloperTreeOCX::rebuild);
    connect(&m_session, &ProjectSession::booksChanged, this, &QV_DeveloperTreeOCX::rebuild);
    connect(&m_session, &ProjectSession::bookChanged, this, &QV_DeveloperTreeOCX::rebuild);
    connect(&m_session, &ProjectSession::quickNavChanged, this, &QV_DeveloperTreeOCX::rebuild);
    connect(&m_session, &ProjectSession::selectionChanged, this,
            &QV_DeveloperTreeOCX::followSession);
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

void QV_DeveloperTreeOCX::rebuild()
{
    const QScopedValueRollback quiet(m_quiet, true);
    const QStringList chosen = m_model->place(current());
    const QList<QStringList> expanded = expandedPlaces();
    const int scrolled = tvwProject->verticalScrollBar()->value();

    m_model->rebuild();
    tvwProject->expandToDepth(0);
    expandPlaces(expanded);
    chooseAgain(chosen);
    tvwProject->verticalScrollBar()->setValue(scrolled);
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

QList<QStringList> QV_DeveloperTreeOCX::expandedPlaces() const
{
    QList<QStringList> places;
    QModelIndexList waiting{QModelIndex()};
    while (!waiting.isEmpty()) {
        const QModelIndex parent = waiting.takeLast();
        for (int row = 0; row < m_shown->rowCount(parent); ++row) {
            const QModelIndex child = m_shown->index(row, 0, parent);
            if (!tvwProject->isExpanded(child))
                continue;
            places.append(m_model->place(m_shown->mapToSource(child)));
            waiting.append(child);
        }
    }
    return places;
}

void QV_DeveloperTreeOCX::expandPlaces(const QList<QStringList> &places)
{
    for (const QStringList &place : places) {
        const QModelIndex node = m_model->find(place);
        if (node.isValid())
            tvwProject->expand(m_shown->mapFromSource(node));
    }
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
    QStringList names;
    for (QModelIndex at = node; m_model->kind(at) != TreeKind::QuickNav; at = at.parent())
        names.prepend(m_model->name(at));
    const int level = static_cast<int>(names.size());
    names.resize(4);
    Q_EMIT evtQVTreeQuickNavInfo(m_session.projectName(), names.at(0), names.at(1), names.at(2),
                                 names.at(3), level);
}

void QV_DeveloperTreeOCX::openCurrent()
{
    tellChoice();
    if (m_model->book(current()) != nullptr)
        Q_EMIT m_session.openRequested();
}

void QV_DeveloperTreeOCX::showMenu(const QPoint &at)
{
    QMenu menu;
    fillMenu(menu);
    menu.exec(tvwProject->viewport()->mapToGlobal(at));
}

void QV_DeveloperTreeOCX::fillMenu(QMenu &menu)
{
    const QModelIndex node = current();
    const TocBook *book = node.isValid() ? m_model->book(node) : nullptr;
    QAction *open = menu.addAction(icon("edit"_L1), tr("&Open"), this, [this] {
        handled(m_session.program(), [this] { openCurrent(); });
    });
    open->setEnabled(node.isValid());
    menu.setDefaultAction(open);
    if (book != nullptr && m_model->kind(node) == TreeKind::Book) {
        menu.addAction(icon("delete"_L1), tr("&Delete book..."), QKeySequence::Delete, this,
                       [this, chosen = *book] { Q_EMIT m_session.deleteRequested(chosen); });
    }
    menu.addSeparator();
    menu.addAction(icon("refresh"_L1), tr("&Refresh"), QKeySequence(Qt::Key_F5), this,
                   [this] { handled(m_session.program(), [this] { RefreshTree(); }); });
    const QString path = node.isValid() ? m_model->path(node) : QString();
    QAction *copy = menu.addAction(icon("copy"_L1), tr("&Copy path"), this, [this, path] {
        QGuiApplication::clipboard()->setText(m_session.shownPath(path));
    });
    copy->setEnabled(!path.isEmpty());
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

bool QV_DeveloperTreeOCX::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != tvwProject || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->matches(QKeySequence::Find)) {
        txtFilter->setFocus();
        txtFilter->selectAll();
    } else if (key->key() == Qt::Key_F5) {
        handled(m_session.program(), [this] { RefreshTree(); });
    } else if (key->key() == Qt::Key_Delete && m_model->kind(current()) == TreeKind::Book) {
        const TocBook book = *m_model->book(current()); // the list changes while it is handled
        Q_EMIT m_session.deleteRequested(book);
    } else {
        return QWidget::eventFilter(watched, event);
    }
    return true;
}
