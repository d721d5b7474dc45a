#pragma once

#include <QList>
#include <QString>
#include <QStringView>

#include <vector>

/// The entries of one link file in little memory: all texts in one string, an entry is four
/// numbers.
class LinkRows final
{
public:
    /// The identifier of the entries to come, until the next one; it starts empty.
    void setIdentifier(QStringView identifier);
    void append(QStringView path); ///< bad until `setGood`
    void setGood(qsizetype row) { m_good[static_cast<size_t>(row)] = true; }
    void squeeze(); ///< when no more will be appended

    [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(m_rows.size()); }
    [[nodiscard]] QStringView identifier(qsizetype row) const { return text(at(row).identifier); }
    [[nodiscard]] QStringView path(qsizetype row) const { return text(at(row).path); }
    [[nodiscard]] bool isGood(qsizetype row) const { return m_good[static_cast<size_t>(row)]; }
    [[nodiscard]] qsizetype goodCount() const;

private:
    struct Piece // a link file, and so its texts, have at most 512 million characters
    {
        quint32 begin = 0;
        quint32 size = 0;
    };
    struct Row
    {
        Piece identifier;
        Piece path;
    };
    Piece keep(QStringView text);
    [[nodiscard]] const Row &at(qsizetype row) const { return m_rows[static_cast<size_t>(row)]; }
    [[nodiscard]] QStringView text(Piece piece) const
    {
        return QStringView(m_texts).sliced(piece.begin, piece.size);
    }

    QString m_texts;
    Piece m_identifier;
    std::vector<Row> m_rows;
    std::vector<bool> m_good;
};

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
