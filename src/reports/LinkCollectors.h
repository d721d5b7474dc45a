#pragma once

#include "reports/LinkDestinations.h"
#include "reports/LinkIdFile.h"
#include "reports/LinkPlaces.h"
#include "reports/LinkRows.h"

#include <optional>
#include <vector>

// What the visitors of a link-ID file keep of it.

/// An entry per path, with the identifier read last.
class RowCollector final : public LinkVisitor
{
public:
    explicit RowCollector(LinkRows &rows)
        : m_rows(rows)
    {
    }
    void identifier(QStringView text) override { m_rows.setIdentifier(text); }
    void path(QStringView stored) override { m_rows.append(stored); }

private:
    LinkRows &m_rows;
};

/// The same, and the place that each entry names.
class TargetCollector final : public LinkVisitor
{
public:
    TargetCollector(LinkRows &rows, LinkPlaces &places, std::vector<quint32> &rowPlaces)
        : m_rows(rows)
        , m_places(places)
        , m_rowPlaces(rowPlaces)
    {
    }
    void identifier(QStringView text) override { m_rows.setIdentifier(text); }
    void path(QStringView stored) override
    {
        m_rows.append(stored);
        m_rowPlaces.push_back(m_places.listed(stored));
    }

private:
    LinkRows &m_rows;
    LinkPlaces &m_places;
    std::vector<quint32> &m_rowPlaces;
};

/// Where identifiers lead: to the first path of an entry that has them; before all entries, to the
/// first path of a section that holds an entry whose text is the identifier.
class DestinationCollector final : public LinkVisitor, public SectionVisitor
{
public:
    DestinationCollector(LinkDestinations &destinations, LinkPlaces &places)
        : m_destinations(destinations)
        , m_places(places)
    {
    }
    void identifier(QStringView text) override { m_destinations.append(text); }
    void path(QStringView stored) override
    {
        if (!m_place)
            m_place = m_places.lookedUp(stored);
    }
    void entryEnds() override
    {
        m_destinations.settle(m_place);
        m_place.reset();
    }
    void sectionTarget(const QString &entryText, QStringView stored) override
    {
        m_sections.append(entryText);
        m_sections.settle(m_places.lookedUp(stored));
    }
    void finish()
    {
        if (!m_sections.all().empty())
            m_destinations.putBehind(std::move(m_sections));
    }

private:
    LinkDestinations &m_destinations;
    LinkPlaces &m_places;
    std::optional<quint32> m_place; ///< of the entry at hand
    LinkDestinations m_sections;
};
