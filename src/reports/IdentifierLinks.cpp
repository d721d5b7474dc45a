#include "reports/IdentifierLinks.h"

#include <QCoreApplication>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("IdentifierLinks", text);
}

/// The references to a place by identifier.
class IdentifierSearch final
{
public:
    IdentifierSearch(const IdentifierIndex &index, const LinkedPlace &place)
        : m_index(index)
        , m_place(place)
    {
    }

    QList<LinkingPage> run()
    {
        for (quint32 identifier = 0; identifier < m_index.count(); ++identifier)
            takeIdentifier(identifier);
        return std::move(m_links);
    }

private:
    using Spot = IdentifierIndex::Spot;

    [[nodiscard]] StoredPlace placeOf(Spot target) const
    {
        return storedPlace(m_index.targetPath(target));
    }
    [[nodiscard]] bool isHere(Spot target) const
    {
        const StoredPlace place = placeOf(target);
        return m_place.holds(place.set, place.place());
    }

    void takeIdentifier(quint32 identifier)
    {
        const auto targets = m_index.targets(identifier);
        for (const Spot target : targets) {
            if (isHere(target))
                return takeReferences(identifier, placeOf(target),
                                      problemOf(identifier, targets.front()));
        }
    }

    /// Links lead to the first place that publishes it, also when that page is missing.
    [[nodiscard]] QString problemOf(quint32 identifier, Spot first) const
    {
        if (!isHere(first))
            return tr("The link leads to %1, which publishes it first.")
                .arg(m_index.targetPath(first));
        return m_index.leadsToPage(identifier) ? QString() : tr("The page is missing.");
    }

    void takeReferences(quint32 identifier, const StoredPlace &target, const QString &problem)
    {
        for (const Spot spot : m_index.references(identifier)) {
            const StoredPlace asking = storedPlace(m_index.askingPath(spot));
            if (!m_place.holds(asking.set, asking.place()))
                m_links.append({asking.set, asking.place(), target.place(),
                                m_index.text(identifier).toString(), problem});
        }
    }

    const IdentifierIndex &m_index;
    const LinkedPlace &m_place;
    QList<LinkingPage> m_links;
};

} // namespace

bool LinkedPlace::holds(const QString &otherSet, const QString &otherPage) const
{
    if (set.compare(otherSet, Qt::CaseInsensitive) != 0)
        return false;
    if (page.isEmpty())
        return otherPage.startsWith(folder, Qt::CaseInsensitive);
    return otherPage.startsWith(page, Qt::CaseInsensitive)
           && (otherPage.size() == page.size() || otherPage.at(page.size()) == u'#');
}

QList<LinkingPage> identifierLinksTo(const IdentifierIndex &index, const LinkedPlace &place)
{
    return IdentifierSearch(index, place).run();
}
