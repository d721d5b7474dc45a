#include "controls/quicknav/SuggestionsDialog.h"

#include "controls/session/ProjectPages.h"
#include "resources/Icons.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype mostSuggestions = 200;
constexpr int placeRole = Qt::UserRole;

/// Titles as the books list them and the headings that are known, without looking at a file.
QList<SuggestionPage> wordsOf(ProjectSession &session, const QList<ListedPage> &pages)
{
    const PageIndex &index = session.pages().latest();
    QList<SuggestionPage> words;
    for (const ListedPage &page : pages) {
        const IndexedPage *known = index.page(page.path);
        words.append({page.title, known != nullptr ? known->headings : QStringList()});
    }
    return words;
}
} // namespace

SuggestionsDialog::SuggestionsDialog(QuickNavEditing &editing, const QuickNavRef &node,
                                     QWidget *parent)
    : QDialog(parent)
    , m_editing(editing)
    , m_pages(listedPages(editing.contents().session()))
    , m_suggestions(wordsOf(editing.contents().session(), m_pages))
    , m_says(new QLabel(this))
    , cboCategory(new QComboBox(this))
    , tvwSuggestions(new QTreeWidget(this))
{
    setObjectName(u"SuggestionsDialog"_s);
    setWindowTitle(tr("Suggested pages"));
    layOut(node);
    connect(cboCategory, &QComboBox::currentIndexChanged, this, &SuggestionsDialog::suggest);
    connect(tvwSuggestions, &QTreeWidget::itemChanged, this, &SuggestionsDialog::enable);
    suggest();
    tvwSuggestions->setFocus();
}

void SuggestionsDialog::layOut(const QuickNavRef &node)
{
    const QuickNav &nav = m_editing.contents().nav();
    const bool isCategory = node.level == QuickNavTree::categoryLevel;
    const QuickNavRef topic = isCategory ? QuickNavTree::parentOf(nav, node) : node;
    for (const QuickNavNode &category : QuickNavTree::below(nav, topic))
        cboCategory->addItem(category.name, category.id);
    cboCategory->setCurrentIndex(isCategory ? cboCategory->findData(node.id) : 0);
    cboCategory->setObjectName(u"cboSuggestFor"_s);
    cboCategory->setAccessibleName(tr("Category the links go into"));

    tvwSuggestions->setObjectName(u"tvwSuggestions"_s);
    tvwSuggestions->setAccessibleName(tr("Suggested pages"));
    tvwSuggestions->setHeaderLabels({tr("Page"), tr("Book"), tr("Why")});
    tvwSuggestions->setRootIsDecorated(false);
    tvwSuggestions->setUniformRowHeights(true);
    tvwSuggestions->setTextElideMode(Qt::ElideMiddle);
    tvwSuggestions->header()->setSectionResizeMode(QHeaderView::Stretch);
    m_says->setObjectName(u"lblSuggestions"_s);
    m_says->setTextFormat(Qt::PlainText);
    m_says->setWordWrap(true);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    cmdAddTicked = buttons->addButton(tr("&Add ticked"), QDialogButtonBox::AcceptRole);
    cmdAddTicked->setObjectName(u"cmdAddTicked"_s);
    cmdAddTicked->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &SuggestionsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SuggestionsDialog::reject);

    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->addRow(tr("&Category:"), cboCategory);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(tvwSuggestions, 1);
    layout->addWidget(m_says);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 26);
}

QuickNavRef SuggestionsDialog::category() const
{
    const QString id = cboCategory->currentData().toString();
    return id.isEmpty() ? QuickNavRef() : QuickNavRef{QuickNavTree::categoryLevel, id};
}

void SuggestionsDialog::suggest()
{
    const QuickNav &nav = m_editing.contents().nav();
    const QuickNavNode *node = QuickNavTree::find(nav, category());
    tvwSuggestions->clear();
    const auto isLinked = [&](const ListedPage &page) {
        return std::any_of(node->links.cbegin(), node->links.cend(), [&](const QuickNavLink &link) {
            return link.page == page.id
                   && link.book.compare(page.book.acronym, Qt::CaseInsensitive) == 0;
        });
    };
    if (node != nullptr) {
        const QStringList names = QuickNavTree::namesTo(nav, category());
        for (const Suggestion &suggestion :
             m_suggestions.resembling(names, mostSuggestions + node->links.size())) {
            const ListedPage &page = m_pages.at(suggestion.page);
            if (isLinked(page))
                continue;
            auto *item = new QTreeWidgetItem(tvwSuggestions,
                                             {page.title, page.book.name, suggestion.reason});
            item->setCheckState(0, Qt::Unchecked);
            item->setData(0, placeRole, suggestion.page);
            item->setToolTip(2, suggestion.reason);
        }
    }
    tvwSuggestions->setCurrentItem(tvwSuggestions->topLevelItem(0));
    enable();
}

void SuggestionsDialog::enable()
{
    const qsizetype count = ticked().size();
    cmdAddTicked->setEnabled(count > 0);
    QString says;
    if (cboCategory->count() == 0)
        says = tr("The topic has no categories that links could go into.");
    else if (tvwSuggestions->topLevelItemCount() == 0)
        says = tr("No page that is not linked yet resembles these names.");
    else
        says = tr("Tick pages with Space; %1 of %2 ticked.")
                   .arg(count)
                   .arg(tvwSuggestions->topLevelItemCount());
    if (!m_editing.contents().session().pages().isReady())
        says += u' ' + tr("The headings of the pages are not known yet.");
    m_says->setText(says);
    cmdAddTicked->setToolTip(count > 0 ? QString() : says);
}

QList<ListedPage> SuggestionsDialog::ticked() const
{
    QList<ListedPage> pages;
    for (int row = 0; row < tvwSuggestions->topLevelItemCount(); ++row) {
        const QTreeWidgetItem *item = tvwSuggestions->topLevelItem(row);
        if (item->checkState(0) == Qt::Checked)
            pages.append(m_pages.at(item->data(0, placeRole).toLongLong()));
    }
    return pages;
}

void SuggestionsDialog::accept()
{
    m_editing.addLinks(category(), linksTo(ticked()));
    QDialog::accept();
}
