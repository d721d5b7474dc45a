#include "dbtoxml/LegacyTableReader.h"

#include "dbtoxml/EarlyEnd.h"
#include "dbtoxml/RawValues.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t firstNoCharacter = 0xfffe; // nor is the one behind it

bool isLong(int type)
{
    return type == MDB_MEMO || type == MDB_OLE;
}

bool isText(int type)
{
    return type == MDB_TEXT || type == MDB_MEMO;
}

/// Bytes that a field of a kind of number has.
qsizetype sizeOf(int type)
{
    if (type == MDB_BYTE)
        return sizeof(quint8);
    return type == MDB_INT ? sizeof(qint16) : sizeof(qint32);
}

std::optional<QDateTime> dateOfText(const QString &text)
{
    const auto date = QDateTime::fromString(text.trimmed(), Qt::ISODate);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

/// True when nothing had to be replaced.
bool makeOneLine(QString &text)
{
    bool isClean = true;
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control || c >= firstNoCharacter) {
            c = u' ';
            isClean = false;
        }
    }
    return isClean;
}

} // namespace

LegacyTableReader::LegacyTableReader(const DatabaseFile &file, const LegacyTableRule &rule,
                                     LegacyFindings &findings)
    : m_path(file.path())
    , m_rule(rule)
    , m_findings(findings)
    , m_table(file.open(*file.find(rule.name)))
{
    std::transform(rule.columns.begin(), rule.columns.end(), m_places.begin(),
                   [this](const LegacyColumn &column) { return m_table->column(column.name); });
}

bool LegacyTableReader::next()
{
    if (m_table->next())
        return true;
    compareWithPromise();
    return false;
}

// To the library an end and a piece of the file that is missing are the same.
void LegacyTableReader::compareWithPromise()
{
    const qint64 promised = m_table->promised(), missing = promised - row();
    if (row() == 0 && missing > 0)
        throw damagedFile(m_path, u"none of the %1 rows of its table %2 can be read"_s.arg(
                                      QString::number(promised), m_rule.name));
    if (missing > 0)
        m_findings.damaged.append(
            {m_rule.name, {}, u"%1 of its %2 rows cannot be read."_s.arg(missing).arg(promised)});
    if (missing < 0)
        m_findings.odd.append(
            {m_rule.name,
             {},
             u"The table says that it has %1 rows, and has %2; all were taken."_s.arg(promised).arg(
                 row())});
}

QString LegacyTableReader::text(QLatin1StringView column)
{
    DecodedText decoded = decodeText(raw(column).value_or(QByteArray()));
    if (!decoded.isClean)
        noteUndecodable(column);
    if (!makeOneLine(decoded.text))
        note(m_findings.odd,
             u"The text of %1 held control characters; they became blanks."_s.arg(column));
    return decoded.text;
}

std::optional<int> LegacyTableReader::number(QLatin1StringView column)
{
    const auto stored = raw(column);
    if (!stored)
        return {};
    const int type = m_table->type(place(column));
    if (!isText(type)) {
        if (stored->size() == sizeOf(type))
            return static_cast<int>(integerOf(*stored));
        note(m_findings.damaged, u"The number in %1 is not as long as it should be."_s.arg(column));
        return {};
    }
    const QString text = decodeText(*stored).text.trimmed();
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber || text.isEmpty())
        return isNumber ? std::optional(number) : std::nullopt;
    note(m_findings.odd,
         u"\"%1\" in %2 is no whole number; it counts as empty."_s.arg(text, column));
    return {};
}

std::optional<QDateTime> LegacyTableReader::date(QLatin1StringView column)
{
    const auto stored = raw(column);
    if (!stored)
        return {};
    const auto date = isText(m_table->type(place(column))) ? dateOfText(decodeText(*stored).text)
                                                           : dateOfDays(*stored);
    if (!date)
        note(m_findings.odd, u"The date in %1 cannot be read; it counts as empty."_s.arg(column));
    return date;
}

std::optional<QString> LegacyTableReader::page(QLatin1StringView column)
{
    const auto stored = raw(column);
    if (!stored)
        return {};
    DecodedText decoded = decodeText(*stored);
    if (!decoded.isClean)
        noteUndecodable(column);
    return std::move(decoded.text);
}

std::optional<QByteArray> LegacyTableReader::bytes(QLatin1StringView column)
{
    return raw(column);
}

int LegacyTableReader::place(QLatin1StringView column) const
{
    const auto found = std::find_if(m_rule.columns.begin(), m_rule.columns.end(),
                                    [&](const LegacyColumn &each) { return each.name == column; });
    return m_places.at(static_cast<size_t>(found - m_rule.columns.begin()));
}

std::optional<QByteArray> LegacyTableReader::raw(QLatin1StringView column)
{
    const int at = place(column), misplaced = m_table->misplacedFields();
    std::optional<LongValue> value;
    if (isLong(m_table->type(at)))
        value = m_table->longValue(at);
    else if (const QByteArrayView field = m_table->field(at); !field.isEmpty())
        value = LongValue{field.toByteArray(), {}};
    if (m_table->misplacedFields() > misplaced)
        note(m_findings.damaged, u"What %1 holds cannot be found."_s.arg(column));
    if (!value)
        return {};
    if (!value->isWhole())
        note(m_findings.damaged, u"What %1 holds is damaged: %2."_s.arg(column, value->fault));
    return std::move(value->bytes);
}

void LegacyTableReader::noteUndecodable(QLatin1StringView column)
{
    note(m_findings.odd, u"The text of %1 cannot be decoded everywhere; characters that are none "
                         "became U+FFFD."_s.arg(column));
}

void LegacyTableReader::note(QList<ConversionProblem> &list, const QString &text) const
{
    list.append({m_rule.name, rowName(), text});
}

QString LegacyTableReader::rowName() const
{
    if (!m_rule.key.isEmpty()) {
        const QByteArrayView key = m_table->field(place(m_rule.key));
        if (!key.isEmpty() && !isText(m_table->type(place(m_rule.key))))
            return u"%1 %2"_s.arg(m_rule.key).arg(integerOf(key));
    }
    return u"row %1"_s.arg(row());
}
