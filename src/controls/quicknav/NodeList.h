#pragma once

#include "controls/quicknav/QuickNavEditing.h"

#include <QListWidget>
#include <QMimeData>

#include <optional>

/// One column of the quick navigation: the views, or the groups, topics or categories below the
/// node chosen to its left. Nodes are renamed in their row; what is wrong with a name is said while
/// it is typed. The context menu offers what the keys do.
class NodeList final : public QListWidget
{
    Q_OBJECT

public:
    NodeList(int level, QuickNavEditing &editing, QWidget *parent = nullptr);

    /// Shows nodes below `parent`; without one it says `hint` instead.
    void showNodes(const std::optional<QuickNavRef> &parent, const QList<QuickNavNode> &nodes,
                   const QString &hint);
    /// Level -1 when none is chosen.
    [[nodiscard]] QuickNavRef current() const;
    /// "" or an unknown one chooses none, or what stands in or before the row `otherwise`.
    void choose(const QString &id, int otherwise = -1);
    [[nodiscard]] bool isEditing() const { return state() == EditingState; }
    /// Opens a row for a new node, below the current one.
    void editNew();

Q_SIGNALS:
    /// What is wrong with the name that is being typed; "" when nothing is, or when it is done.
    void nameProblem(const QString &problem);
    void columnWanted(int step); ///< one to the left (-1) or to the right (1)
    void editingEnded();
    /// Pages of the project tree were dropped on a category.
    void pagesDropped(const QuickNavRef &category, const QMimeData *mime);

private:
    friend class NodeNameDelegate;
    struct Drop
    {
        QuickNavRef parent;
        int place = -1;
    };
    /// The name that is being typed. Until it is taken, other nodes may be shown.
    struct Edit
    {
        QuickNavRef node; ///< without id: a new one
        QuickNavRef parent;
        int row = -1;
        std::optional<QString> name = {}; ///< what was typed and is good
    };

    void addActions();
    void enableActions();
    [[nodiscard]] QuickNavRef refAt(int row) const;
    void beginEdit(int row);
    [[nodiscard]] QString problemOf(const QString &name) const; ///< for the node that is edited
    void finishEditing();
    void toClipboard(bool cut);
    void paste();
    [[nodiscard]] std::optional<Drop> dropAt(const QDropEvent &event) const;
    void take(const QuickNavItems &items, const Drop &drop, bool copy);

    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData *mimeData(const QList<QListWidgetItem *> &items) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

    const int m_level;
    QuickNavEditing &m_editing;
    std::optional<QuickNavRef> m_parent;
    QString m_hint;
    std::optional<Edit> m_edit;
    QAction *m_new = nullptr;
    QAction *m_paste = nullptr;
    QList<QAction *> m_forCurrent; ///< what needs a chosen node
};
