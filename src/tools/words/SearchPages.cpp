#include "tools/words/SearchPages.h"

#include "platform/QvError.h"
#include "platform/Xml.h"
#include "platform/XmlTokens.h"
#include "tools/build/DerivedXml.h"

#include <QRegularExpression>

#include <algorithm>
#include <bit>

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "Search_Pages"_L1, pageName = "Page"_L1, titleName = "Page_Title"_L1,
               targetName = "Page_Target"_L1, wordsName = "Page_Words"_L1;

void readRoot(const XmlTokens &tokens, SearchPages &pages)
{
    if (tokens.name() != rootName)
        throw QvError(PathFileAccess, {}, u"this is not %1"_s.arg(SearchFile::pages));
    pages.language = tokens.attribute(u"Language");
    pages.shards = std::bit_floor(std::max(1U, tokens.attribute(u"Shards").toUInt()));
    pages.next = std::max(1U, tokens.attribute(u"NextPage").toUInt());
}

SearchPage readPage(const XmlTokens &tokens)
{
    SearchPage page;
    page.number = tokens.attribute(u"No").toUInt();
    page.book = tokens.attribute(u"Book");
    page.page = tokens.attribute(u"Page");
    page.sum = tokens.attribute(u"Sum").toULongLong(nullptr, 16);
    return page;
}

void takeText(SearchPage &page, QStringView element, QStringView text)
{
    if (element == titleName)
        page.title += text;
    else if (element == targetName)
        page.target += text;
    else if (element == wordsName)
        page.words = text.toUInt();
}

void takePages(XmlTokens &tokens, SearchPages &pages)
{
    QString element;
    for (auto kind = tokens.next(); kind != XmlTokens::Kind::End; kind = tokens.next()) {
        if (kind == XmlTokens::Kind::StartElement && tokens.depth() == 1)
            readRoot(tokens, pages);
        else if (kind == XmlTokens::Kind::StartElement && tokens.name() == pageName)
            pages.pages.append(readPage(tokens));
        else if (kind == XmlTokens::Kind::StartElement)
            element = tokens.name().toString();
        else if (kind == XmlTokens::Kind::Text && tokens.depth() == 3 && !pages.pages.isEmpty())
            takeText(pages.pages.last(), element, tokens.text());
    }
}

void writePage(DerivedXml &xml, const SearchPage &page)
{
    xml.markup("\t<Page No=\"");
    xml.number(page.number);
    xml.markup("\" Book=\"");
    xml.text(page.book);
    xml.markup("\" Page=\"");
    xml.text(page.page);
    xml.markup("\" Sum=\"");
    xml.text(QString::number(page.sum, 16));
    xml.markup("\">\r\n\t\t<Page_Title>");
    xml.text(page.title);
    xml.markup("</Page_Title>\r\n\t\t<Page_Target>");
    xml.text(page.target);
    xml.markup("</Page_Target>\r\n\t\t<Page_Words>");
    xml.number(page.words);
    xml.markup("</Page_Words>\r\n\t</Page>\r\n");
}

} // namespace

QString SearchFile::words(quint32 shard)
{
    return u"Words_%1.xml"_s.arg(shard, 3, 10, QLatin1Char('0'));
}

bool SearchFile::isWords(const QString &name)
{
    static const QRegularExpression words(uR"(^Words_[0-9]{3}\.xml$)"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    return words.match(name).hasMatch();
}

SearchPages readSearchPages(FileSystem &files, const QString &path)
{
    SearchPages pages;
    const QString text = readXmlText(files, path);
    readXmlTokens(text, path, [&](XmlTokens &tokens) { takePages(tokens, pages); });
    return pages;
}

QByteArray searchPagesFile(const SearchPages &pages)
{
    DerivedXml xml;
    xml.markup("<Search_Pages Language=\"");
    xml.text(pages.language);
    xml.markup("\" Shards=\"");
    xml.number(pages.shards);
    xml.markup("\" NextPage=\"");
    xml.number(pages.next);
    xml.markup("\">\r\n");
    for (const SearchPage &page : pages.pages)
        writePage(xml, page);
    xml.markup("</Search_Pages>\r\n");
    return xml.bytes();
}

quint32 shardOf(std::string_view stem, quint32 shards)
{
    quint32 hash = 2166136261U;
    for (const char byte : stem)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
    return hash & (shards - 1);
}
