#include "tools/migration/LegacyOutlines.h"

#include "projectfiles/BookOutline.h"
#include "tools/migration/LegacyRows.h"

using namespace Qt::StringLiterals;

namespace {

QString idOf(char16_t letter, qsizetype number)
{
    return letter + QString::number(number).rightJustified(4, u'0');
}

QString textOf(const TreeFault &fault, const LegacyPage &page)
{
    switch (fault.kind) {
    case TreeFault::Kind::KeyTaken:
        return u"Row %1 has the same PageID as an earlier one, which gets what stands below both."_s
            .arg(page.row);
    case TreeFault::Kind::ParentMissing:
        return u"There is no page with ParentPageID %1; the page stands at the top."_s.arg(
            *page.parent);
    case TreeFault::Kind::ParentElsewhere:
        return u"Its ParentPageID %1 is a page of another book; the page stands at the top."_s.arg(
            *page.parent);
    case TreeFault::Kind::Circle:
        return u"It stands below itself; the page stands at the top now."_s;
    case TreeFault::Kind::TooDeep:
        break;
    }
    return u"It stands more than %1 levels deep; it is now on level %1."_s.arg(deepestOutline);
}

/// Those of `places` from `at` on that stand on one level, each with what stands below it.
class OutlineMaker final
{
public:
    OutlineMaker(const QList<TreePlace> &places, const std::function<BookPage(qsizetype)> &page)
        : m_places(places)
        , m_page(page)
    {
    }
    QList<BookPage> make(int level)
    {
        QList<BookPage> pages;
        while (m_at < m_places.size() && m_places.at(m_at).level == level) {
            pages.append(m_page(m_places.at(m_at++).row));
            pages.last().pages = make(level + 1);
        }
        return pages;
    }

private:
    const QList<TreePlace> &m_places;
    const std::function<BookPage(qsizetype)> &m_page;
    qsizetype m_at = 0;
};

} // namespace

LegacyOutlines::LegacyOutlines(const LegacyBookSet &set, const LegacyPlaces &places,
                               MigrationNotes &notes)
    : m_places(places)
    , m_outlines(places.books.size())
    , m_pageIds(set.pages.size())
    , m_globalIds(set.globalPages.size())
{
    const QList<qsizetype> order = inOrder(set.pages);
    QList<TreeRow> rows;
    for (const qsizetype at : order)
        rows.append({set.pages.at(at).id, set.pages.at(at).parent, places.bookOfPage.at(at)});
    const LegacyTree tree = plantTree(rows, deepestOutline);
    for (const TreeFault &fault : tree.faults) {
        const LegacyPage &page = set.pages.at(order.at(fault.row));
        notes.add(LegacyTable::pages, nameOf(page), textOf(fault, page));
    }
    for (const TreePlace &place : tree.places) {
        const qsizetype at = order.at(place.row);
        QList<TreePlace> &outline = m_outlines[places.bookOfPage.at(at)];
        outline.append({at, place.level});
        m_pageIds[at] = idOf(u'P', outline.size());
    }
    qsizetype number = 0;
    for (const qsizetype at : inOrder(set.globalPages))
        m_globalIds[at] = idOf(u'G', ++number);
}

std::optional<KeyWord::Page> LegacyOutlines::keyOf(const MovedPlace *place) const
{
    if (place && place->kind == MovedPlace::Kind::Page)
        return KeyWord::Page{m_places.books.at(m_places.bookOfPage.at(place->at)).acronym,
                             m_pageIds.at(place->at)};
    if (place && place->kind == MovedPlace::Kind::GlobalPage)
        return KeyWord::Page{u"GLOBAL"_s, m_globalIds.at(place->at)};
    return std::nullopt;
}

QList<BookPage> LegacyOutlines::pagesOf(qsizetype book, const QStringList &titles,
                                        const QList<QStringList> &linkIds) const
{
    const std::function<BookPage(qsizetype)> page = [&](qsizetype at) {
        BookPage made;
        made.id = m_pageIds.at(at);
        made.title = titles.at(at);
        made.file = m_places.pages.at(at).now.sliced(m_places.books.at(book).folder.size());
        made.linkIds = linkIds.at(at);
        return made;
    };
    return OutlineMaker(m_outlines.at(book), page).make(1);
}
