#pragma once

#include "controls/quicknav/QuickNavEditing.h"

#include <QMimeData>
#include <QWidget>

#include <array>

class NodeList;
class QLabel;
class QLineEdit;
class QToolButton;

/// View, group, topic and category side by side: each column shows what stands below the node
/// chosen in the one before it. Keeps the author's place when something changes.
class QuickNavColumns final : public QWidget
{
    Q_OBJECT

public:
    explicit QuickNavColumns(QuickNavEditing &editing, QWidget *parent = nullptr);

    /// The deepest chosen node; level -1 for none.
    [[nodiscard]] QuickNavRef chosen() const;
    [[nodiscard]] QuickNavRef chosenCategory() const; ///< level -1 for none
    /// Chooses a node and what it stands in; level -1 none. Nothing below it is chosen then.
    void choose(const QuickNavRef &node);
    void focusNode(const QuickNavRef &node); ///< puts the keyboard on its column
    void focusFilter();

Q_SIGNALS:
    void chosenChanged();
    void linksWanted(); ///< to the right of the last column
    void pagesDropped(const QuickNavRef &category, const QMimeData *mime);

private:
    static constexpr int columns = 4;

    void layOut();
    QWidget *heading(int column);
    void connectColumn(int column);
    void followContents();
    void fill(int column);
    void fillFrom(int column);
    void goTo(int column);
    [[nodiscard]] NodeList *list(int column) const
    {
        return m_lists.at(static_cast<size_t>(column));
    }
    [[nodiscard]] std::optional<QuickNavRef> parentOf(int column) const;
    [[nodiscard]] QList<QuickNavNode> shownIn(int column) const;
    [[nodiscard]] bool isShown(const QuickNavNode &node) const;
    [[nodiscard]] QString hintFor(int column) const;

    QuickNavEditing &m_editing;
    std::array<NodeList *, columns> m_lists{};
    std::array<QToolButton *, columns> m_adds{};
    QLineEdit *txtFilter;
    QLabel *m_nameProblem;
    bool m_isWaiting = false; ///< a change came while a name was being typed
};
