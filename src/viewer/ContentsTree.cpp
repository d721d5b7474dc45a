#include "viewer/ContentsTree.h"

#include "platform/QvError.h"
#include "resources/Icons.h"

#include <QHeaderView>
#include <QTreeWidgetItemIterator>

using namespace Qt::StringLiterals;

namespace {

constexpr int placeRole = Qt::UserRole;

UnfoldedEntry unfoldedBelow(const QTreeWidgetItem *parent)
{
    UnfoldedEntry unfolded{parent->text(0), {}};
    for (int i = 0; i < parent->childCount(); ++i) {
        if (parent->child(i)->isExpanded())
            unfolded.entries.append(unfoldedBelow(parent->child(i)));
    }
    return unfolded;
}

} // namespace

ContentsTree::ContentsTree(ViewerWorld &world, QWidget *parent)
    : QTreeWidget(parent)
    , m_world(world)
{
    setObjectName(u"tvwContents"_s);
    setAccessibleName(tr("Contents"));
    setHeaderHidden(true);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents); // long titles can be scrolled to
    header()->setStretchLastSection(false);
    connect(this, &QTreeWidget::itemExpanded, this, &ContentsTree::unfold);
    connect(this, &QTreeWidget::itemClicked, this, &ContentsTree::choose);
    connect(this, &QTreeWidget::itemActivated, this, &ContentsTree::choose);
}

void ContentsTree::reload()
{
    const UnfoldedEntry before = unfoldedBelow(invisibleRootItem());
    m_late.clear();
    m_notes.clear();
    clear();
    addHelp();
    const auto unreadable = [this](const QvError &error) { m_notes.append(error.description()); };
    trap(unreadable, [this] {
        m_world.sets = bookSets(m_world.session, m_world.files);
        addSets();
    });
    unfoldAgain(invisibleRootItem(), before);
}

void ContentsTree::showPlace(const ViewerPlace &place)
{
    for (QTreeWidgetItemIterator at(this); *at != nullptr; ++at) {
        const QVariant own = (*at)->data(0, placeRole);
        if (own.isValid() && own.value<ViewerPlace>().set == place.set
            && own.value<ViewerPlace>().page.compare(place.page, Qt::CaseInsensitive) == 0) {
            if (*at != currentItem())
                setCurrentItem(*at);
            return;
        }
    }
}

void ContentsTree::addHelp()
{
    if (m_world.help.folder().isEmpty()) {
        m_notes.append(tr("The help pages are not installed."));
        return;
    }
    QTreeWidgetItem *const help =
        addLate(invisibleRootItem(), tr("QV Developer Help"), u"help"_s, [this](auto *parent) {
            for (const HelpPage &page : m_world.help.pages())
                add(parent, page.title, u"page"_s)
                    ->setData(0, placeRole, QVariant::fromValue(ViewerPlace{{}, page.file}));
        });
    help->setData(0, placeRole, QVariant::fromValue(ViewerPlace{{}, HelpPages::start}));
}

void ContentsTree::addSets()
{
    if (m_world.session.serverPath.isEmpty())
        m_notes.append(tr("No server folder is set. Start QV Developer once to choose "
                          "it; then its book sets are shown here."));
    else if (m_world.sets.isEmpty())
        m_notes.append(tr("The server has no book sets yet."));
    for (const BookSet &set : std::as_const(m_world.sets)) {
        const QString name = set.name;
        addLate(invisibleRootItem(), name, u"project"_s,
                [this, name](auto *parent) { fillSet(parent, name); });
    }
}

void ContentsTree::fillSet(QTreeWidgetItem *parent, const QString &set)
{
    const auto contents = [this, set] { return SetContents(m_world.session, m_world.files, set); };
    addLate(parent, tr("Global pages"), u"globals"_s, [this, contents](auto *item) {
        addEntries(item, contents().globalPages(), {u"page-global"_s});
    });
    QTreeWidgetItem *const books =
        addLate(parent, tr("Books"), u"books"_s, [this, set](auto *item) { fillBooks(item, set); });
    addLate(parent, tr("Quick navigation"), u"quicknav"_s, [this, contents](auto *item) {
        addEntries(item, contents().quickNavigation(),
                   {u"quicknav-view"_s, u"quicknav-group"_s, u"quicknav-topic"_s,
                    u"quicknav-category"_s, u"page"_s});
    });
    books->setExpanded(true);
}

void ContentsTree::fillBooks(QTreeWidgetItem *parent, const QString &set)
{
    const SetContents contents(m_world.session, m_world.files, set);
    for (const TocBook &book : contents.books())
        addLate(parent, book.name, u"book"_s, [this, contents, book](auto *item) {
            addEntries(item, contents.pages(book), {u"page"_s});
        });
}

void ContentsTree::addEntries(QTreeWidgetItem *parent, const QList<ContentsEntry> &entries,
                              const QStringList &icons, qsizetype level)
{
    if (entries.isEmpty() && level == 0)
        addNote(parent, tr("Empty"));
    for (const ContentsEntry &entry : entries) {
        QTreeWidgetItem *const item =
            add(parent, entry.title, icons.at(qMin(level, icons.size() - 1)));
        if (!entry.place.page.isEmpty())
            item->setData(0, placeRole, QVariant::fromValue(entry.place));
        addEntries(item, entry.entries, icons, level + 1);
    }
}

QTreeWidgetItem *ContentsTree::add(QTreeWidgetItem *parent, const QString &title,
                                   const QString &iconName)
{
    auto *const item = new QTreeWidgetItem(parent, {title});
    item->setIcon(0, icon(QLatin1StringView(iconName.toLatin1())));
    return item;
}

QTreeWidgetItem *ContentsTree::addLate(QTreeWidgetItem *parent, const QString &title,
                                       const QString &iconName, Fill fill)
{
    QTreeWidgetItem *const item = add(parent, title, iconName);
    item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    m_late.insert(item, std::move(fill));
    return item;
}

void ContentsTree::addNote(QTreeWidgetItem *parent, const QString &text)
{
    add(parent, text, u"information"_s)->setToolTip(0, text.toHtmlEscaped());
}

void ContentsTree::unfold(QTreeWidgetItem *item)
{
    const Fill fill = m_late.take(item);
    if (!fill)
        return;
    const auto unreadable = [&](const QvError &error) { addNote(item, error.description()); };
    trap(unreadable, [&] { fill(item); });
    item->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

void ContentsTree::choose(const QTreeWidgetItem *item)
{
    const QVariant place = item->data(0, placeRole);
    if (place.isValid())
        Q_EMIT placeChosen(place.value<ViewerPlace>());
}

void ContentsTree::unfoldAgain(QTreeWidgetItem *parent, const UnfoldedEntry &before)
{
    for (int i = 0; i < parent->childCount(); ++i) {
        QTreeWidgetItem *const item = parent->child(i);
        for (const UnfoldedEntry &entry : before.entries) {
            if (entry.title != item->text(0))
                continue;
            item->setExpanded(true);
            unfoldAgain(item, entry);
        }
    }
}
