#pragma once

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
