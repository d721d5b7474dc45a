#pragma once

#include "dbtoxml/Libmdb.h"

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

#include <memory>
#include <optional>

/// A value that may lie apart from its row, as texts and pictures do.
struct LongValue
{
    QByteArray bytes; ///< as far as they can be read
    QString fault;    ///< what is wrong with it; "" when nothing is
    [[nodiscard]] bool isWhole() const { return fault.isEmpty(); }
};

/// The rows of one table, one after the other in the order in which they lie in the file.
class DatabaseTable final
{
public:
    DatabaseTable(MdbHandle *handle, qint64 fileSize, unsigned long page);
    DatabaseTable(const DatabaseTable &) = delete;
    DatabaseTable &operator=(const DatabaseTable &) = delete;
    ~DatabaseTable();

    [[nodiscard]] bool isReadable() const; ///< before anything else is asked

    /// Without regard to case; -1 when there is none.
    [[nodiscard]] int column(QLatin1StringView name) const;
    [[nodiscard]] int type(int column) const; ///< MDB_TEXT, ...

    bool next();
    [[nodiscard]] int fetched() const { return m_fetched; }
    /// How many rows the table says it has; 0 also after a program broke off writing it.
    [[nodiscard]] qint64 promised() const { return m_table->num_rows; }

    /// The bytes of the current row's field, until the next call of `next`; none when it is null
    /// (the database knows no empty fields), or when it does not lie inside its page: such fields
    /// are counted.
    [[nodiscard]] QByteArrayView field(int column) const;
    [[nodiscard]] int misplacedFields() const { return m_misplaced; }
    [[nodiscard]] std::optional<LongValue> longValue(int column) const;

private:
    [[nodiscard]] MdbColumn *at(int column) const;
    [[nodiscard]] LongValue apart(quint32 place, qsizetype length, bool isOnePiece) const;
    [[nodiscard]] std::optional<QByteArrayView> piece(quint32 place) const;

    MdbHandle *m_handle;
    qint64 m_fileSize;
    MdbCatalogEntry m_entry{};
    MdbTableDef *m_table = nullptr;
    int m_fetched = 0;
    mutable int m_misplaced = 0;
};
