// Separated values as a page with one table.

#include "tools/import/PageConversion.h"

#include <QHash>
#include <QList>
#include <QStringList>

#include <algorithm>
#include <compare>

using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QStringList>;

/// Cuts a text into rows and values.
class ValueReader final
{
public:
    ValueReader(QStringView text, QChar separator)
        : m_text(text)
        , m_separator(separator)
    {
    }

    /// At most so many rows; all for -1.
    Rows rows(qsizetype most = -1)
    {
        Rows rows;
        while (m_at < m_text.size() && rows.size() != most)
            rows.append(row());
        return rows;
    }

private:
    QStringList row()
    {
        QStringList values;
        for (;;) {
            values.append(value());
            if (m_at >= m_text.size())
                return values;
            const QChar end = m_text[m_at++];
            if (end == m_separator)
                continue;
            if (end == u'\r' && m_at < m_text.size() && m_text[m_at] == u'\n')
                ++m_at;
            return values;
        }
    }

    QString value()
    {
        QString value;
        if (m_at < m_text.size() && m_text[m_at] == u'"')
            value = quoted();
        const qsizetype begin = m_at;
        while (m_at < m_text.size() && m_text[m_at] != m_separator && m_text[m_at] != u'\n'
               && m_text[m_at] != u'\r')
            ++m_at;
        return value += m_text.sliced(begin, m_at - begin);
    }

    QString quoted()
    {
        QString value;
        for (++m_at; m_at < m_text.size(); ++m_at) {
            if (m_text[m_at] == u'"') {
                ++m_at;
                if (m_at >= m_text.size() || m_text[m_at] != u'"')
                    return value;
            }
            value += m_text[m_at];
        }
        return value;
    }

    QStringView m_text;
    QChar m_separator;
    qsizetype m_at = 0;
};

bool isEmptyRow(const QStringList &row)
{
    return std::all_of(row.begin(), row.end(),
                       [](const QString &value) { return value.isEmpty(); });
}

/// How a separator cuts the first rows of a text.
struct Cut
{
    qsizetype rows = 0;    ///< that have as many columns as each other, and more than one
    qsizetype columns = 0; ///< of these
    auto operator<=>(const Cut &) const = default;
};

Cut cutAt(QStringView text, QChar separator)
{
    constexpr qsizetype rowsLookedAt = 20;
    QHash<qsizetype, qsizetype> rowsWith; // so many columns
    for (const QStringList &row : ValueReader(text, separator).rows(rowsLookedAt)) {
        if (!isEmptyRow(row) && row.size() > 1)
            ++rowsWith[row.size()];
    }
    Cut best;
    for (auto count = rowsWith.cbegin(); count != rowsWith.cend(); ++count)
        best = std::max(best, Cut{*count, count.key()});
    return best;
}

/// The separator that cuts most rows alike: single rows may be shorter, and text or amounts may
/// hold the other ones. Commas come last, because they stand in both.
QChar likelySeparator(QStringView text)
{
    QChar likely = u',';
    Cut best;
    for (const QChar separator : u"\t;|,"_s) {
        if (const Cut cut = cutAt(text, separator); cut > best) {
            best = cut;
            likely = separator;
        }
    }
    return likely;
}

QString rowHtml(const QStringList &values, qsizetype columns, const QString &cell)
{
    QString html = u"<tr>"_s;
    for (qsizetype i = 0; i < columns; ++i) {
        QString text = values.value(i).toHtmlEscaped();
        text.replace("\r\n"_L1, "\n"_L1).replace(u'\n', "<br>"_L1);
        html += u'<' + cell + u'>' + text + u"</"_s + cell.section(u' ', 0, 0) + u'>';
    }
    return html + u"</tr>\n"_s;
}

} // namespace

ConvertedPage pageFromTable(QStringView text, bool onlyTabs)
{
    QChar separator = onlyTabs ? QChar(u'\t') : QChar();
    // Spreadsheets may say the separator in the first line.
    if (!onlyTabs && text.startsWith(u"sep=") && text.size() > 4) {
        separator = text[4];
        const qsizetype end = text.indexOf(u'\n');
        text = end < 0 ? QStringView() : text.sliced(end + 1);
    }
    Rows rows = ValueReader(text, separator.isNull() ? likelySeparator(text) : separator).rows();
    rows.removeIf(isEmptyRow);
    if (rows.isEmpty())
        return {};
    qsizetype columns = 0;
    for (const QStringList &row : std::as_const(rows))
        columns = std::max(columns, row.size());
    ConvertedPage page;
    page.body = u"<table>\n<thead>\n"_s + rowHtml(rows.takeFirst(), columns, u"th scope=\"col\""_s)
                + u"</thead>\n<tbody>\n"_s;
    for (const QStringList &row : std::as_const(rows))
        page.body += rowHtml(row, columns, u"td"_s);
    page.body += u"</tbody>\n</table>\n"_s;
    return page;
}
