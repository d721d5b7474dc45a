#pragma once

#include "reports/LinkRows.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <vector>

/// What the link report found: one entry per link, kept in little memory. As a list it has two
/// empty slots behind its last entry, and each slot reads "<status>@@@<identifier>@@@<address>".
/// Copies share what they hold.
class LinkEntries final
{
public:
    LinkEntries() = default;
    /// `docs` is what stands before the stored path in an address: "<server path>Docs\".
    explicit LinkEntries(QString docs);

    void append(LinkRows rows); ///< the entries of the next link file

    [[nodiscard]] qsizetype count() const; ///< without the empty slots
    /// Highest index of the list: count() + 1.
    [[nodiscard]] qsizetype UBound() const { return count() + 1; }
    /// A slot of the list; "" for an empty one.
    [[nodiscard]] QString at(qsizetype index) const;

    // Of an entry, not of an empty slot:
    [[nodiscard]] bool isGood(qsizetype index) const;
    [[nodiscard]] QString status(qsizetype index) const; ///< "OK" or "BAD"
    [[nodiscard]] QString identifier(qsizetype index) const;
    [[nodiscard]] QString address(qsizetype index) const; ///< full product path, anchor included
    [[nodiscard]] qsizetype goodCount() const { return m_goodCount; }

    /// The same texts without a copy, for sorting and searching; valid as long as the entries. All
    /// addresses begin with `docs()`, and the stored path follows.
    [[nodiscard]] QStringView identifierView(qsizetype index) const;
    [[nodiscard]] QStringView storedPath(qsizetype index) const;
    [[nodiscard]] const QString &docs() const { return m_docs; }

private:
    struct Place
    {
        const LinkRows &rows;
        qsizetype row;
    };
    [[nodiscard]] Place place(qsizetype index) const;

    QString m_docs;
    QList<LinkRows> m_files;       ///< none of them empty
    std::vector<qsizetype> m_ends; ///< index behind the last entry of each file
    qsizetype m_goodCount = 0;
};
