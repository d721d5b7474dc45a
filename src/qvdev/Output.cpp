#include "qvdev/Output.h"

#include "qvdev/ProgressLine.h"

#include <QJsonDocument>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QString cell(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool() ? u"yes"_s : u"no"_s;
    return value.toVariant().toString();
}

QString lineOf(const QStringList &cells, const QList<qsizetype> &widths)
{
    QString line;
    for (qsizetype at = 0; at < cells.size(); ++at)
        line += cells.at(at).leftJustified(widths.at(at)) + u"  "_s;
    while (line.endsWith(u' '))
        line.chop(1);
    return line + u'\n';
}

} // namespace

Output::Output(bool asJson, ProgressLine &progress)
    : m_json(asJson)
    , m_progress(progress)
{
}

void Output::table(const QList<Column> &columns, const QJsonArray &rows)
{
    if (m_json) {
        bytes(QJsonDocument(rows).toJson());
        return;
    }
    QList<QStringList> lines(1);
    for (const Column &column : columns)
        lines.first().append(column.heading);
    for (const QJsonValue &row : rows) {
        QStringList cells;
        for (const Column &column : columns)
            cells.append(cell(row[column.member]));
        lines.append(cells);
    }
    QList<qsizetype> widths(columns.size());
    for (const QStringList &line : lines) {
        for (qsizetype at = 0; at < line.size(); ++at)
            widths[at] = std::max(widths.at(at), line.at(at).size());
    }
    QString text;
    for (const QStringList &line : lines)
        text += lineOf(line, widths);
    bytes(text.toUtf8());
}

void Output::result(const QString &text, const QJsonObject &object)
{
    if (m_json)
        bytes(QJsonDocument(object).toJson());
    else if (!text.isEmpty())
        bytes(text.toUtf8() + '\n');
}

void Output::refusal(const QString &reason)
{
    if (m_json && m_isEmpty)
        result({}, {{"refused"_L1, reason}});
}

void Output::bytes(const QByteArray &content)
{
    m_isEmpty = false;
    m_progress.clear();
    const auto size = static_cast<size_t>(content.size());
    const bool isWritten = std::fwrite(content.constData(), 1, size, stdout) == size;
    m_failed = !isWritten || std::fflush(stdout) != 0 || m_failed;
}

bool Output::wasWritten() const
{
    return !m_failed;
}
