#pragma once

#include "controls/tree/ProjectMime.h"
#include "controls/tree/TreeBadges.h"
#include "controls/tree/TreeBuilder.h"
#include "controls/tree/TreeLooks.h"

#include <QAbstractItemModel>

/// The project as a tree. The pages of a book, the global pages and the quick navigation are read
/// when their node is opened, not before.
class ProjectTreeModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        BadgesRole = Qt::UserRole, ///< TreeBadgeList
    };

    explicit ProjectTreeModel(ProjectSession &session, QObject *parent = nullptr);
    ~ProjectTreeModel() override;

    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex &parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &child) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex &parent = {}) const override;
    [[nodiscard]] bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

    // Dragging within the tree and from outside only asks the editors; nothing moves by itself.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;
    [[nodiscard]] bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row,
                                       int column, const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

    [[nodiscard]] TreeKind kind(const QModelIndex &index) const;
    [[nodiscard]] QString name(const QModelIndex &index) const;
    /// The book of a book node or of one of its pages; null for others.
    [[nodiscard]] const TocBook *book(const QModelIndex &index) const;
    /// Id of a page, "" for others.
    [[nodiscard]] QString pageId(const QModelIndex &index) const;
    /// Names of a quick-navigation node and of those above it, view first; empty for others.
    [[nodiscard]] QStringList quickNavNames(const QModelIndex &index) const;
    /// What the node is for the editors; nothing for a problem.
    [[nodiscard]] std::optional<ProjectRequest::Node> requestNode(const QModelIndex &index) const;
    /// The product's path of what the node stands for; "" when it has none.
    [[nodiscard]] QString path(const QModelIndex &index) const;
    [[nodiscard]] bool isLocked(const QModelIndex &index) const;
    /// Whether it was cut and waits to be pasted.
    [[nodiscard]] bool isCut(const QModelIndex &index) const;

    /// Where a node lies, by ids, so that it is found again after everything was read again; and
    /// the node of such a place, reading what is needed on the way.
    [[nodiscard]] QStringList place(const QModelIndex &index) const;
    QModelIndex find(const QStringList &place);
    /// The node of a book, or with an id that of one of its pages.
    QModelIndex find(const TocBook &book, const QString &pageId);
    [[nodiscard]] QModelIndex section(TreeKind kind) const; ///< Globals, Books or QuickNav
    /// The categories of the quick navigation that link to a page. Raises 75 naming the file.
    QList<QModelIndex> categoriesWith(const QString &acronym, const QString &pageId);

    /// Builds the tree anew from the session, or the part below one node.
    void rebuild();
    void rebuild(const QModelIndex &node);

    /// Which nodes a filter keeps; no words keep all. Returns how many match.
    int markMatches(const QStringList &words);
    [[nodiscard]] bool isKept(const QModelIndex &index) const;
    [[nodiscard]] bool leadsToMatch(const QModelIndex &index) const; ///< one lies below it
    /// A node whose contents have not been read; an invalid index when all were.
    [[nodiscard]] QModelIndex nextUnread() const;

Q_SIGNALS:
    void badgesChanged();
    void cutChanged();
    void dropped(const ProjectRequest &request);

private:
    [[nodiscard]] TreeNode *nodeAt(const QModelIndex &index) const;
    [[nodiscard]] QModelIndex indexOf(const TreeNode *node) const;
    [[nodiscard]] TreeBadgeList badges(const TreeNode &node) const;
    [[nodiscard]] QString relativePath(const TreeNode &node) const;
    [[nodiscard]] QString folderOf(const TreeNode &node) const;
    [[nodiscard]] QString toolTip(const QModelIndex &index) const;
    [[nodiscard]] QString spokenText(const QModelIndex &index) const;
    void followClipboard();

    ProjectSession &m_session;
    TreeBuilder m_builder;
    TreeLooks m_looks;
    TreeBadges *m_badges;
    QStringList m_words;
    DraggedNodes m_cut; ///< waits on the clipboard
    std::unique_ptr<TreeNode> m_root;
};
