#pragma once

#include "controls/books/OutlineEdit.h"
#include "controls/tree/ProjectMime.h"

#include <QTreeWidget>

/// The tree of an outline: titles are edited in place, pages dragged to another place, and other
/// pages and files dropped in.
class OutlineTree final : public QTreeWidget
{
    Q_OBJECT

public:
    enum Column { TitleColumn, FileColumn, ContextColumn, ProblemColumn };
    enum Role { IdRole = Qt::UserRole, PathRole, TitleRole };

    explicit OutlineTree(QWidget *parent = nullptr);

    /// Whose pages these are.
    void setBook(const QString &projectFolder, const TocBook &book);
    [[nodiscard]] QTreeWidgetItem *itemOf(const QString &page) const;
    /// Ids of the chosen pages in the order of the outline.
    [[nodiscard]] QStringList chosen() const;
    /// Adds pages to the chosen ones; the current one stays.
    void choose(const QStringList &pages);

Q_SIGNALS:
    void titleJudged(const QString &problem); ///< while it is typed; "" when there is none
    void titleEntered(const QString &page, const QString &title);
    void nodesDropped(const DraggedNodes &nodes, const OutlinePlace &place);
    void filesDropped(const QStringList &machinePaths);

private:
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QList<QTreeWidgetItem *> &items) const override;
    Qt::DropActions supportedDropActions() const override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    [[nodiscard]] OutlinePlace placeAt(const QPoint &position) const;

    QString m_projectFolder;
    TocBook m_book;
};
