#pragma once

#include "viewer/SetContents.h"
#include "viewer/ViewerWorld.h"

#include <QHash>
#include <QTreeWidget>

#include <functional>

/// An entry that was unfolded, and those below it.
struct UnfoldedEntry
{
    QString title;
    QList<UnfoldedEntry> entries;
};

/// The product's help and the book sets with all their pages. What lies below an entry is read when
/// it is unfolded.
class ContentsTree final : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ContentsTree(ViewerWorld &world, QWidget *parent = nullptr);

    /// Reads the catalogue again, and what was unfolded.
    void reload();
    /// What the reader should know of the whole, such as that there is no server; mostly none.
    [[nodiscard]] const QStringList &notes() const { return m_notes; }
    /// Makes the entry of a place the current one, if it has been unfolded.
    void showPlace(const ViewerPlace &place);

Q_SIGNALS:
    void placeChosen(const ViewerPlace &place);

private:
    using Fill = std::function<void(QTreeWidgetItem *)>;
    void addHelp();
    void addSets();
    void fillSet(QTreeWidgetItem *parent, const QString &set);
    void fillBooks(QTreeWidgetItem *parent, const QString &set);
    void addEntries(QTreeWidgetItem *parent, const QList<ContentsEntry> &entries,
                    const QStringList &icons, qsizetype level = 0);
    QTreeWidgetItem *add(QTreeWidgetItem *parent, const QString &title, const QString &iconName);
    QTreeWidgetItem *addLate(QTreeWidgetItem *parent, const QString &title, const QString &iconName,
                             Fill fill);
    void addNote(QTreeWidgetItem *parent, const QString &text);
    void unfold(QTreeWidgetItem *item);
    void choose(const QTreeWidgetItem *item);
    void unfoldAgain(QTreeWidgetItem *parent, const UnfoldedEntry &before);

    ViewerWorld &m_world;
    QStringList m_notes;
    QHash<QTreeWidgetItem *, Fill> m_late; ///< what is not read yet
};
