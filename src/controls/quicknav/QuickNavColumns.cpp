#include "controls/quicknav/QuickNavColumns.h"

#include "controls/quicknav/NodeList.h"
#include "controls/quicknav/ProblemLook.h"
#include "resources/Icons.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
struct ColumnTexts
{
    QString objectName, heading, add, choose, empty;
};

ColumnTexts textsOf(int column)
{
    using Self = QuickNavColumns;
    const std::array<ColumnTexts, 4> texts{
        {{u"Views"_s,
          Self::tr("&Views"),
          Self::tr("New view"),
          {},
          Self::tr("There are no views yet. Press Ins to add one.")},
         {u"Groups"_s, Self::tr("&Groups"), Self::tr("New group"), Self::tr("Choose a view first."),
          Self::tr("The view has no groups yet. Press Ins to add one.")},
         {u"Topics"_s, Self::tr("Top&ics"), Self::tr("New topic"),
          Self::tr("Choose a group first."),
          Self::tr("The group has no topics yet. Press Ins to add one.")},
         {u"Categories"_s, Self::tr("&Categories"), Self::tr("New category"),
          Self::tr("Choose a topic first."),
          Self::tr("The topic has no categories yet. Press Ins to add one.")}}};
    return texts.at(static_cast<size_t>(column));
}

bool contains(const QString &text, const QString &part)
{
    return text.contains(part, Qt::CaseInsensitive);
}

bool resembles(const QuickNavNode &node, const QString &filter)
{
    return contains(node.name, filter)
           || std::any_of(node.links.cbegin(), node.links.cend(),
                          [&](const QuickNavLink &link) { return contains(link.title, filter); })
           || std::any_of(node.children.cbegin(), node.children.cend(),
                          [&](const QuickNavNode &child) { return resembles(child, filter); });
}
} // namespace

QuickNavColumns::QuickNavColumns(QuickNavEditing &editing, QWidget *parent)
    : QWidget(parent)
    , m_editing(editing)
    , txtFilter(new QLineEdit(this))
    , m_nameProblem(new QLabel(this))
{
    layOut();
    for (int column = 0; column < columns; ++column)
        connectColumn(column);
    connect(txtFilter, &QLineEdit::textChanged, this, &QuickNavColumns::followContents);
    connect(&m_editing.contents(), &QuickNavContents::changed, this,
            &QuickNavColumns::followContents);
    fillFrom(0);
}

void QuickNavColumns::layOut()
{
    txtFilter->setObjectName(u"txtQuickNavFilter"_s);
    txtFilter->setPlaceholderText(tr("Filter (Ctrl+F)"));
    txtFilter->setAccessibleName(tr("Filter of the quick navigation"));
    txtFilter->setToolTip(tr("Shows what has this text in its name, above it or below it."));
    txtFilter->setClearButtonEnabled(true);
    m_nameProblem->setObjectName(u"lblNameProblem"_s);
    m_nameProblem->setTextFormat(Qt::PlainText);
    m_nameProblem->setWordWrap(true);
    m_nameProblem->hide();

    auto *lists = new QGridLayout;
    for (int column = 0; column < columns; ++column) {
        auto *nodes = new NodeList(column, m_editing, this);
        nodes->setObjectName(u"lst"_s + textsOf(column).objectName);
        nodes->setAccessibleName(QString(textsOf(column).heading).remove(u'&'));
        m_lists.at(static_cast<size_t>(column)) = nodes;
        lists->addWidget(heading(column), 0, column);
        setTabOrder(m_adds.at(static_cast<size_t>(column)), nodes);
        lists->addWidget(nodes, 1, column);
        lists->setColumnStretch(column, 1);
    }
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(txtFilter);
    layout->addLayout(lists, 1);
    layout->addWidget(m_nameProblem);
}

QWidget *QuickNavColumns::heading(int column)
{
    auto *bar = new QWidget(this);
    auto *label = new QLabel(textsOf(column).heading, bar);
    label->setBuddy(list(column));
    auto *add = new QToolButton(bar);
    add->setObjectName(u"cmdNew"_s + textsOf(column).objectName);
    add->setIcon(icon("add"_L1));
    add->setAutoRaise(true);
    add->setAccessibleName(textsOf(column).add);
    connect(add, &QToolButton::clicked, this, [this, column] { list(column)->editNew(); });
    m_adds.at(static_cast<size_t>(column)) = add;
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins({});
    layout->addWidget(label, 1);
    layout->addWidget(add);
    return bar;
}

void QuickNavColumns::connectColumn(int column)
{
    NodeList *nodes = list(column);
    connect(nodes, &NodeList::currentRowChanged, this, [this, column] {
        fillFrom(column + 1);
        Q_EMIT chosenChanged();
    });
    connect(nodes, &NodeList::columnWanted, this,
            [this, column](int step) { goTo(column + step); });
    connect(nodes, &NodeList::pagesDropped, this, &QuickNavColumns::pagesDropped);
    connect(nodes, &NodeList::nameProblem, this, [this](const QString &problem) {
        m_nameProblem->setText(problem.isEmpty() ? QString() : u"\u26A0 "_s + problem);
        m_nameProblem->setVisible(!problem.isEmpty());
        QPalette colours = palette();
        colours.setColor(QPalette::WindowText, problemColour(palette()));
        m_nameProblem->setPalette(colours);
    });
    connect(nodes, &NodeList::editingEnded, this, [this] {
        if (std::exchange(m_isWaiting, false))
            followContents();
    });
}

void QuickNavColumns::goTo(int column)
{
    if (column == columns)
        Q_EMIT linksWanted();
    else if (column >= 0)
        list(column)->setFocus(Qt::ShortcutFocusReason);
}

std::optional<QuickNavRef> QuickNavColumns::parentOf(int column) const
{
    if (column == 0)
        return m_editing.contents().session().projectName().isEmpty()
                   ? std::nullopt
                   : std::optional(QuickNavRef());
    const QuickNavRef parent = list(column - 1)->current();
    return parent.id.isEmpty() ? std::nullopt : std::optional(parent);
}

bool QuickNavColumns::isShown(const QuickNavNode &node) const
{
    return resembles(node, txtFilter->text().trimmed());
}

// What has the text is shown, with what leads there and all below it.
QList<QuickNavNode> QuickNavColumns::shownIn(int column) const
{
    const auto parent = parentOf(column);
    if (!parent)
        return {};
    const QuickNav &nav = m_editing.contents().nav();
    QList<QuickNavNode> nodes = QuickNavTree::below(nav, *parent);
    const QString filter = txtFilter->text().trimmed();
    const QStringList above = QuickNavTree::namesTo(nav, *parent);
    const bool isBelowFound = std::any_of(
        above.cbegin(), above.cend(), [&](const QString &name) { return contains(name, filter); });
    if (!filter.isEmpty() && !isBelowFound)
        nodes.removeIf([this](const QuickNavNode &node) { return !isShown(node); });
    return nodes;
}

QString QuickNavColumns::hintFor(int column) const
{
    if (!m_editing.contents().problem().isEmpty())
        return {};
    if (!parentOf(column))
        return textsOf(column).choose;
    return txtFilter->text().trimmed().isEmpty() ? textsOf(column).empty
                                                 : tr("Nothing here has the filter's text.");
}

void QuickNavColumns::fill(int column)
{
    const auto parent = parentOf(column);
    list(column)->showNodes(parent, shownIn(column), hintFor(column));
    QToolButton *add = m_adds.at(static_cast<size_t>(column));
    add->setEnabled(parent.has_value());
    add->setToolTip(parent ? tr("%1 (Ins)").arg(textsOf(column).add) : textsOf(column).choose);
}

void QuickNavColumns::fillFrom(int column)
{
    for (int at = column; at < columns; ++at)
        fill(at);
}

// What was chosen stays chosen; of what has gone, the neighbour that took its row.
void QuickNavColumns::followContents()
{
    const auto isEditing = [](const NodeList *nodes) { return nodes->isEditing(); };
    m_isWaiting = std::any_of(m_lists.cbegin(), m_lists.cend(), isEditing);
    if (m_isWaiting)
        return;
    bool isLost = false;
    for (int column = 0; column < columns; ++column) {
        NodeList *nodes = list(column);
        const QuickNavRef was = nodes->current();
        const int row = nodes->currentRow();
        const QSignalBlocker quiet(nodes);
        fill(column);
        if (isLost || row < 0)
            continue;
        nodes->choose(was.id, row);
        isLost = nodes->current() != was;
    }
    Q_EMIT chosenChanged();
}

QuickNavRef QuickNavColumns::chosen() const
{
    QuickNavRef deepest;
    for (const NodeList *nodes : m_lists) {
        if (const QuickNavRef current = nodes->current(); !current.id.isEmpty())
            deepest = current;
    }
    return deepest;
}

QuickNavRef QuickNavColumns::chosenCategory() const
{
    const QuickNavRef current = list(columns - 1)->current();
    return current.id.isEmpty() ? QuickNavRef() : current;
}

void QuickNavColumns::choose(const QuickNavRef &node)
{
    const QuickNav &nav = m_editing.contents().nav();
    const QList<QuickNavRef> way = QuickNavTree::wayTo(nav, node);
    for (int column = 0; column < columns; ++column) {
        const QString id = way.value(column).id;
        list(column)->choose(id);
        if (id.isEmpty() || !list(column)->current().id.isEmpty())
            continue;
        txtFilter->clear(); // it hides what is to be shown
        list(column)->choose(id);
    }
}

void QuickNavColumns::focusNode(const QuickNavRef &node)
{
    list(std::clamp(node.level, 0, columns - 1))->setFocus();
}

void QuickNavColumns::focusFilter()
{
    txtFilter->setFocus();
    txtFilter->selectAll();
}
