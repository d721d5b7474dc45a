#include "tools/migration/LegacyCategories.h"

#include "tools/migration/LegacyRows.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A list whose first spelling of a name wins.
class Names final
{
public:
    /// The name as it stands in the list.
    QString add(const QString &name)
    {
        const auto known = m_spelled.constFind(name.toCaseFolded());
        if (known != m_spelled.cend())
            return *known;
        m_spelled.insert(name.toCaseFolded(), name);
        m_all.append(name);
        return name;
    }
    [[nodiscard]] const QStringList &all() const { return m_all; }

private:
    QHash<QString, QString> m_spelled;
    QStringList m_all;
};

class Collector final
{
public:
    Collector(const LegacyPlaces &places, MigrationNotes &notes)
        : m_places(places)
        , m_notes(notes)
        , m_books(places.books.size())
    {
    }

    void takeBooks(const LegacyBookSet &set)
    {
        QList<const LegacyBookCategory *> rows;
        for (const LegacyBookCategory &row : set.bookCategories)
            rows.append(&row);
        std::stable_sort(rows.begin(), rows.end(), [&](const auto *one, const auto *other) {
            return bookOf(*one) < bookOf(*other);
        });
        qsizetype lost = 0;
        for (const LegacyBookCategory *row : std::as_const(rows))
            lost += takeBook(*row) ? 0 : 1;
        m_notes.count(LegacyTable::bookCategories, set.bookCategories.size(), lost);
    }

    void takeGlobalPages(const LegacyBookSet &set)
    {
        for (const qsizetype at : inOrder(set.globalPages)) {
            const LegacyGlobalPage &page = set.globalPages.at(at);
            if (!page.category.trimmed().isEmpty())
                m_all.add(plain(LegacyTable::globalPages, nameOf(page), page.category));
        }
    }

    LegacyCategories result()
    {
        LegacyCategories categories{.all = m_all.all(), .books = {}};
        for (const Names &names : std::as_const(m_books))
            categories.books.append(names.all());
        return categories;
    }

private:
    /// Place in the list of books; behind them when there is none.
    [[nodiscard]] qsizetype bookOf(const LegacyBookCategory &row) const
    {
        const int family = row.book ? m_places.familyOf(row.book) : -1;
        const bool isThere =
            family >= 0 && family < m_books.size() && m_places.books.at(family).id == row.book;
        return isThere ? family : m_books.size();
    }

    bool takeBook(const LegacyBookCategory &row)
    {
        if (row.category.trimmed().isEmpty()) {
            m_notes.add(LegacyTable::bookCategories, nameOf(row),
                        u"It names no category; it was left out."_s);
            return false;
        }
        const QString name =
            m_all.add(plain(LegacyTable::bookCategories, nameOf(row), row.category));
        if (const qsizetype book = bookOf(row); book < m_books.size())
            m_books[book].add(name);
        else
            m_notes.add(LegacyTable::bookCategories, nameOf(row),
                        u"There is no such book; the category \"%1\" is only in the list of the "
                        "project."_s.arg(name));
        return true;
    }

    /// Commas separate categories elsewhere.
    QString plain(QLatin1StringView table, const QString &row, const QString &category)
    {
        QString name = category.trimmed();
        if (!name.contains(u','))
            return name;
        name.replace(u',', u';');
        m_notes.add(table, row,
                    u"The category \"%1\" holds a comma; it is now \"%2\"."_s.arg(category, name));
        return name;
    }

    const LegacyPlaces &m_places;
    MigrationNotes &m_notes;
    Names m_all;
    QList<Names> m_books;
};

} // namespace

LegacyCategories categoriesOf(const LegacyBookSet &set, const LegacyPlaces &places,
                              MigrationNotes &notes)
{
    Collector collector(places, notes);
    collector.takeBooks(set);
    collector.takeGlobalPages(set);
    return collector.result();
}
