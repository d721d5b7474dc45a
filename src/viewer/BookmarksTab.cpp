#include "viewer/BookmarksTab.h"

#include "controls/parts/Tables.h"

#include <QAction>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

BookmarksTab::BookmarksTab(QWidget *parent)
    : QWidget(parent)
    , m_bookmarks(readBookmarks())
    , lstBookmarks(new QListWidget(this))
    , cmdRemove(makeButton(u"cmdRemove"_s, "remove"_L1, tr("&Remove"), this))
{
    lstBookmarks->setObjectName(u"lstBookmarks"_s);
    lstBookmarks->setAccessibleName(tr("Bookmarks"));
    setFocusProxy(lstBookmarks);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lstBookmarks, 1);
    layout->addWidget(cmdRemove, 0, Qt::AlignLeft);
    auto *remove = new QAction(this);
    remove->setShortcut(Qt::Key_Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    lstBookmarks->addAction(remove);
    connect(remove, &QAction::triggered, this, &BookmarksTab::removeChosen);
    connect(cmdRemove, &QPushButton::clicked, this, &BookmarksTab::removeChosen);
    connect(lstBookmarks, &QListWidget::itemActivated, this, &BookmarksTab::choose);
    connect(lstBookmarks, &QListWidget::itemClicked, this, &BookmarksTab::choose);
    connect(lstBookmarks, &QListWidget::currentRowChanged, this, &BookmarksTab::enableRemove);
    fill();
}

void BookmarksTab::add(const QString &title, const ViewerPlace &place)
{
    const bool known = std::any_of(m_bookmarks.cbegin(), m_bookmarks.cend(),
                                   [&](const Bookmark &one) { return one.place == place; });
    if (known)
        return;
    m_bookmarks.append({title, place});
    writeBookmarks(m_bookmarks);
    fill();
}

void BookmarksTab::fill()
{
    lstBookmarks->clear();
    for (const Bookmark &bookmark : std::as_const(m_bookmarks)) {
        const QString set = bookmark.place.set;
        lstBookmarks->addItem(set.isEmpty() ? bookmark.title
                                            : tr("%1 (%2)").arg(bookmark.title, set));
    }
    enableRemove();
}

void BookmarksTab::choose(const QListWidgetItem *item)
{
    Q_EMIT placeChosen(m_bookmarks[lstBookmarks->row(item)].place);
}

void BookmarksTab::removeChosen()
{
    const int row = lstBookmarks->currentRow();
    if (row < 0)
        return;
    m_bookmarks.removeAt(row);
    writeBookmarks(m_bookmarks);
    fill();
    lstBookmarks->setCurrentRow(qMin(row, lstBookmarks->count() - 1));
}

void BookmarksTab::enableRemove()
{
    cmdRemove->setEnabled(lstBookmarks->currentRow() >= 0);
}
