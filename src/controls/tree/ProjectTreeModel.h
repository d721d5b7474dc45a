#pragma once

#include "controls/session/ProjectSession.h"

#include <QAbstractItemModel>
#include <QSet>

#include <memory>
#include <vector>

enum class TreeKind {
    Project,
    Globals,
    GlobalPage,
    Books,
    Book,
    Page,
    QuickNav, ///< the five levels of the quick navigation follow each other
    View,
    Group,
    Topic,
    Category,
    Problem, ///< says why a file could not be read
};

/// The project as a tree. The pages of a book, the global pages and the quick navigation are read
/// when their node is opened, not before.
class ProjectTreeModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        FilterRole = Qt::UserRole, ///< text the filter looks at; "" for the fixed nodes
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

    [[nodiscard]] TreeKind kind(const QModelIndex &index) const;
    [[nodiscard]] QString name(const QModelIndex &index) const;
    /// The book of a book node or of one of its pages; null for others.
    [[nodiscard]] const TocBook *book(const QModelIndex &index) const;
    /// Id of a page, "" for others.
    [[nodiscard]] QString pageId(const QModelIndex &index) const;
    /// The product's path of what the node stands for; "" when it has none.
    [[nodiscard]] QString path(const QModelIndex &index) const;

    /// Where a node lies, by names and ids, so that it is found again after everything was read
    /// again; and the node of such a place, reading what is needed on the way.
    [[nodiscard]] QStringList place(const QModelIndex &index) const;
    QModelIndex find(const QStringList &place);
    /// The node of a book, or with an id that of one of its pages.
    QModelIndex find(const TocBook &book, const QString &pageId);

    /// Builds the tree anew from the session.
    void rebuild();

private:
    struct Node;
    using Nodes = std::vector<std::unique_ptr<Node>>;

    [[nodiscard]] Node *nodeAt(const QModelIndex &index) const;
    [[nodiscard]] QModelIndex indexOf(const Node *node) const;
    [[nodiscard]] Nodes contentsOf(const Node &node);
    [[nodiscard]] Nodes booksOf();
    [[nodiscard]] static Nodes pagesOf(const QList<BookPage> &pages, qsizetype book);
    [[nodiscard]] static Nodes quickNavOf(const QList<QuickNavNode> &nodes, TreeKind kind);
    static void adopt(Node &parent, Nodes nodes);
    [[nodiscard]] QString filterText(const Node &node) const;
    [[nodiscard]] QString spokenText(const Node &node) const;
    [[nodiscard]] QString shownName(const Node &node) const;

    ProjectSession &m_session;
    std::unique_ptr<Node> m_root;
    QSet<QString> m_sharedNames; ///< of books; these show their acronym too
};
