#pragma once

#include "controls/quicknav/LinkSuggestions.h"
#include "controls/quicknav/QuickNavEditing.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QPushButton;
class QTreeWidget;

/// Pages whose title or headings resemble the names of a category, or of a topic, and of what it
/// stands in, to be ticked and added as links.
class SuggestionsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// `node` is a category, or a topic: its categories are offered then.
    SuggestionsDialog(QuickNavEditing &editing, const QuickNavRef &node, QWidget *parent = nullptr);

private:
    void layOut(const QuickNavRef &node);
    void suggest();
    void enable();
    [[nodiscard]] QuickNavRef category() const;
    [[nodiscard]] QList<ListedPage> ticked() const;
    void accept() override;

    QuickNavEditing &m_editing;
    QList<ListedPage> m_pages;
    LinkSuggestions m_suggestions; ///< from the words of the pages
    QLabel *m_says;
    QComboBox *cboCategory;
    QTreeWidget *tvwSuggestions;
    QPushButton *cmdAddTicked = nullptr;
};
