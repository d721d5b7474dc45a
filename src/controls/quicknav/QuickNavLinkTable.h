#pragma once

#include "controls/quicknav/QuickNavEditing.h"

#include <QTreeWidget>

#include <optional>

struct DraggedNodes;

/// The ordered links of one category: title and place in the page are changed in their row; a link
/// that leads nowhere says so. Pages of the project tree can be dropped or pasted here.
class QuickNavLinkTable final : public QTreeWidget
{
    Q_OBJECT

public:
    enum Column { Title, Book, Page, Anchor, State };

    explicit QuickNavLinkTable(QuickNavEditing &editing, QWidget *parent = nullptr);

    /// Shows a category's links; level -1 shows none. The chosen links stay chosen.
    void showLinks(const QuickNavRef &category);
    [[nodiscard]] const QuickNavRef &category() const { return m_category; }
    [[nodiscard]] std::optional<QuickNavLink> currentLink() const;
    /// Pages of the tree into a category, in place of a mouse too: from drag or clipboard.
    bool addPages(const QuickNavRef &category, const QMimeData *mime, int place);
    void removeChosen();
    void openCurrent();

Q_SIGNALS:
    void addWanted();      ///< pages are to be chosen for new links
    void retargetWanted(); ///< another page for the current link
    void currentChanged();

private:
    friend class QuickNavLinkDelegate;

    void layOut();
    void addActions();
    void enableActions();
    QTreeWidgetItem *itemFor(const QuickNavLink &link);
    [[nodiscard]] QStringList chosenIds() const; ///< in the order of the rows
    [[nodiscard]] QStringList anchorsFor(int row) const;
    void edit(Column column);
    void finishEditing();
    void toClipboard(bool cut);
    void paste();
    [[nodiscard]] std::optional<int> dropAt(const QDropEvent &event) const;

    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData *mimeData(const QList<QTreeWidgetItem *> &items) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

    /// What was typed into a row. Until it is taken, other links may be shown.
    struct Typed
    {
        QuickNavLink link;
        int column = 0;
        QString shown, text; ///< before and now
    };
    QuickNavEditing &m_editing;
    ProjectSession &m_session;
    QuickNavRef m_category;
    QList<QuickNavLink> m_links;
    std::optional<Typed> m_typed;
    QAction *m_add = nullptr;
    QAction *m_paste = nullptr;
    QList<QAction *> m_forCurrent;
    bool m_isWaiting = false; ///< a change came while a row was being edited
};
