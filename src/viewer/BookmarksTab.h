#pragma once

#include "viewer/Bookmarks.h"

#include <QWidget>

class QListWidget;
class QListWidgetItem;
class QPushButton;

/// The reader's bookmarks.
class BookmarksTab final : public QWidget
{
    Q_OBJECT

public:
    explicit BookmarksTab(QWidget *parent = nullptr);

    /// Keeps a place under that title; one that is kept already is not kept twice.
    void add(const QString &title, const ViewerPlace &place);

Q_SIGNALS:
    void placeChosen(const ViewerPlace &place);

private:
    void fill();
    void choose(const QListWidgetItem *item);
    void removeChosen();
    void enableRemove();

    QList<Bookmark> m_bookmarks;
    QListWidget *lstBookmarks;
    QPushButton *cmdRemove;
};
