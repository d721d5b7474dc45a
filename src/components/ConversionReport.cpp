#include "components/ConversionReport.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<std::pair<ConversionEnd, QLatin1StringView>, 6> endNames{
    {{ConversionEnd::Done, "done"_L1},
     {ConversionEnd::Refused, "refused"_L1},
     {ConversionEnd::Damaged, "damaged"_L1},
     {ConversionEnd::PartlyReadable, "partly"_L1},
     {ConversionEnd::Failed, "failed"_L1},
     {ConversionEnd::BrokenOff, "broken off"_L1}}};

QString nameOf(ConversionEnd end)
{
    const auto found = std::find_if(endNames.begin(), endNames.end(),
                                    [end](const auto &entry) { return entry.first == end; });
    return found->second;
}

std::optional<ConversionEnd> endOf(const QString &name)
{
    const auto found = std::find_if(endNames.begin(), endNames.end(),
                                    [&](const auto &entry) { return entry.second == name; });
    return found == endNames.end() ? std::nullopt : std::optional(found->first);
}

QByteArray line(const QString &kind, QJsonObject values)
{
    values.insert(u"kind"_s, kind);
    return QJsonDocument(values).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

QByteArray ConversionLines::progress(int done, int total, const QString &what)
{
    return line(u"progress"_s, {{u"done"_s, done}, {u"total"_s, total}, {u"what"_s, what}});
}

QByteArray ConversionLines::count(const ConversionCount &count)
{
    return line(
        u"count"_s,
        {{u"table"_s, count.table}, {u"read"_s, count.read}, {u"written"_s, count.written}});
}

QByteArray ConversionLines::problem(const ConversionProblem &problem)
{
    return line(u"problem"_s,
                {{u"table"_s, problem.table}, {u"row"_s, problem.row}, {u"text"_s, problem.text}});
}

QByteArray ConversionLines::end(ConversionEnd end, const QString &reason, const QString &folder)
{
    return line(u"end"_s, {{u"end"_s, nameOf(end)}, {u"reason"_s, reason}, {u"folder"_s, folder}});
}

ConversionLines::Reader::Reader(Step step)
    : m_step(std::move(step))
{
}

void ConversionLines::Reader::take(const QByteArray &line)
{
    const QJsonObject values = QJsonDocument::fromJson(line).object();
    const QString kind = values.value("kind"_L1).toString();
    const auto text = [&](QLatin1StringView name) { return values.value(name).toString(); };
    const auto number = [&](QLatin1StringView name) { return values.value(name).toInt(); };
    if (kind == "progress"_L1)
        m_step(number("done"_L1), number("total"_L1), text("what"_L1));
    else if (kind == "count"_L1)
        m_report.counts.append({text("table"_L1), number("read"_L1), number("written"_L1)});
    else if (kind == "problem"_L1)
        m_report.problems.append({text("table"_L1), text("row"_L1), text("text"_L1)});
    if (const auto end = endOf(text("end"_L1)); kind == "end"_L1 && end) {
        m_report.end = *end;
        m_report.reason = text("reason"_L1);
        m_report.folder = text("folder"_L1);
        m_hasEnded = true;
    }
}

std::optional<ConversionReport> ConversionLines::Reader::report() const
{
    return m_hasEnded ? std::optional(m_report) : std::nullopt;
}
