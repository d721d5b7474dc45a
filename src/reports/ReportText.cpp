#include "reports/ReportText.h"

#include "platform/Paths.h"
#include "resources/Texts.h"

#include <QStringEncoder>

using namespace Qt::StringLiterals;

namespace {

constexpr auto lineEnd = "\r\n"_L1;
constexpr int betweenLooks = 4096; ///< lines until the next look for Stop

QStringList columnNames()
{
    return {text(Text::StatusColumn), text(Text::LinkIdColumn), text(Text::AddressColumn)};
}

/// `lineOf` for each link, below `head`, in the encoding.
QByteArray fileOf(const ListedLinks &list, QStringConverter::Encoding encoding, const QString &head,
                  const std::function<QString(qsizetype index)> &lineOf, const Progress &progress)
{
    QStringEncoder encode(encoding, QStringConverter::Flag::WriteBom);
    QByteArray file = encode(head);
    const auto total = static_cast<int>(list.rows.size());
    int done = 0;
    for (const quint32 index : list.rows) {
        if (done++ % betweenLooks == 0)
            progress.step(done, total);
        file += encode(lineOf(index));
    }
    return file;
}

QString csvField(const QString &value)
{
    const auto needsQuotes = [](QChar c) {
        return c == u',' || c == u'"' || c == u'\r' || c == u'\n';
    };
    if (std::none_of(value.begin(), value.end(), needsQuotes))
        return value;
    return u'"' + QString(value).replace(u'"', "\"\""_L1) + u'"';
}

QString csvLine(const QStringList &values)
{
    QStringList fields;
    for (const QString &value : values)
        fields.append(csvField(value));
    return fields.join(u',') + lineEnd;
}

QString htmlHead(const ReportHead &head)
{
    const QString names = columnNames().join("</th><th scope=\"col\">"_L1);
    return uR"(<!DOCTYPE html>
<html>
<head>
<meta charset="utf-8">
<meta name="color-scheme" content="light dark">
<title>%1</title>
<style>
body { font-family: Verdana, sans-serif; }
th, td { text-align: left; padding: 2px 12px 2px 0; overflow-wrap: anywhere; }
.BAD { font-weight: bold; }
</style>
</head>
<body>
<h1>%1</h1>
<p>%2<br>%3</p>
<table>
<tr><th scope="col">%4</th></tr>
)"_s.arg(head.title.toHtmlEscaped(),
         (text(Text::ReportGeneratedOn) + head.generated).toHtmlEscaped(),
         head.counts.toHtmlEscaped(), names);
}

QString htmlAddress(const QString &address, const QString &link)
{
    const QString shown = address.toHtmlEscaped();
    return link.isEmpty() ? shown : u"<a href=\"%1\">%2</a>"_s.arg(link.toHtmlEscaped(), shown);
}

} // namespace

QString reportLink(const QString &address)
{
    QString link = address.trimmed();
    link.replace(u'\\', u'/').replace(u' ', "%20"_L1);
    return (link.startsWith(u'/') ? "file://"_L1 : "file:///"_L1) + link;
}

std::optional<LinkedPage> pageOf(const QString &address, const QString &docs, bool anchored)
{
    if (!address.startsWith(docs))
        return std::nullopt;
    const QString below = address.sliced(docs.size());
    const qsizetype anchor = anchored ? below.lastIndexOf(u'#') : -1;
    const auto path = insideOf(docs, anchor < 0 ? below : below.first(anchor));
    if (!path)
        return std::nullopt;
    return LinkedPage{*path, anchor < 0 ? QString() : below.sliced(anchor + 1)};
}

QByteArray reportText(const ListedLinks &list, const Progress &progress)
{
    const auto line = [&](qsizetype index) {
        return list.links.status(index).trimmed() + u'\t' + list.links.identifier(index).trimmed()
               + u'\t' + reportLink(list.links.address(index)) + lineEnd;
    };
    return fileOf(list, QStringConverter::Utf16LE, columnNames().join(u'\t') + lineEnd, line,
                  progress);
}

QByteArray reportCsv(const ListedLinks &list, const Progress &progress)
{
    const auto line = [&](qsizetype index) {
        return csvLine(
            {list.links.status(index), list.links.identifier(index), list.links.address(index)});
    };
    return fileOf(list, QStringConverter::Utf8, csvLine(columnNames()), line, progress);
}

QByteArray reportHtml(const ListedLinks &list, const ReportHead &head,
                      const std::function<QString(const QString &address)> &linkFor,
                      const Progress &progress)
{
    const auto line = [&](qsizetype index) {
        const QString status = list.links.status(index);
        const QString address = list.links.address(index);
        return u"<tr class=\"%1\"><td>%1</td><td>%2</td><td>%3</td></tr>\n"_s.arg(
            status, list.links.identifier(index).toHtmlEscaped(),
            htmlAddress(address, linkFor(address)));
    };
    return fileOf(list, QStringConverter::Utf8, htmlHead(head), line, progress)
           + "</table>\n</body>\n</html>\n";
}
