#include "tools/build/PageScan.h"

#include "tools/PageSkeleton.h"
#include "tools/html/HtmlEntities.h"

#include <algorithm>

using Kind = PageReference::Kind;
using Place = ReadablePage::Place;

namespace {

constexpr size_t longestText = 1000; // of a heading or title that somebody forgot to end

quint8 headingLevel(HtmlTag tag)
{
    return tag >= HtmlTag::H1 && tag <= HtmlTag::H6
               ? static_cast<quint8>(int(tag) - int(HtmlTag::H1) + 1)
               : quint8(0);
}

bool has(const PageToken &tag, HtmlKey attribute)
{
    return std::any_of(
        tag.attributes.begin(), tag.attributes.end(),
        [attribute](const BasicHtmlAttribute<std::string_view> &a) { return a.key == attribute; });
}

/// The beginning of a text; characters stay whole.
std::string_view firstOf(std::string_view text, size_t bytes)
{
    if (text.size() <= bytes)
        return text;
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80)
        --bytes;
    return text.substr(0, bytes);
}

/// Something that is neither a blank nor a space that only holds a place.
bool showsSomething(std::string_view html)
{
    const std::string text = plainText(html);
    size_t at = 0;
    while (text.compare(at, 2, "\u00A0") == 0 || text.compare(at, 1, " ") == 0)
        at += text[at] == ' ' ? 1 : 2;
    return at < text.size();
}

} // namespace

PageScan::PageScan(ScanContext context, TargetTable &targets)
    : m_context(std::move(context))
    , m_languageTag(languageTag(m_context.language).data(),
                    size_t(languageTag(m_context.language).size()))
    , m_resolver(m_context.project, targets)
{
}

PageFacts PageScan::page(const QByteArray &bytes, std::string_view path, ReadablePage *text)
{
    const PageBytes page(bytes, m_context.language);
    begin(page.text(), path);
    scan(text);
    if (m_context.faults)
        noteWholePage(page);
    addFaults();
    return m_facts; // a copy takes only the room it needs
}

PageFacts PageScan::styleSheet(const QByteArray &bytes, std::string_view path)
{
    const PageBytes sheet(bytes, m_context.language);
    begin(sheet.text(), path);
    noteStyle(m_page);
    if (m_context.faults)
        noteBytes(sheet);
    addFaults();
    return m_facts;
}

void PageScan::begin(std::string_view page, std::string_view path)
{
    m_facts.text.clear();
    m_facts.title = m_facts.language = {};
    m_facts.refs.clear();
    m_facts.anchors.clear();
    m_facts.headings.clear();
    m_facts.linkIds.clear();
    m_facts.faults.clear();
    m_facts.hasBase = false;
    m_page = page;
    m_linePlace = 0;
    m_line = 1;
    m_title.clear();
    m_heading.clear();
    m_charset.clear();
    m_raw = HtmlTag::Other;
    m_templates = m_drawings = 0;
    m_headingLevel = 0;
    m_isSeen = false;
    m_resolver.startPage(path);
    m_markup.begin();
}

void PageScan::scan(ReadablePage *text)
{
    m_readable.begin(text);
    PageTokens tokens(m_page);
    for (const PageToken *token = &tokens.next(); token->kind != PageToken::Kind::End;
         token = &tokens.next()) {
        if (token->kind == PageToken::Kind::Text)
            takeText(*token);
        else if (token->kind == PageToken::Kind::StartTag)
            takeStart(*token);
        else
            takeEnd(*token);
    }
    endHeading();
    if (m_context.faults)
        noteCutOff(tokens);
    m_facts.title = add(plainText(m_title));
}

bool PageScan::isHidden() const
{
    switch (m_raw) {
    case HtmlTag::Script:
    case HtmlTag::Iframe:
    case HtmlTag::Noembed:
    case HtmlTag::Noframes:
        return true;
    default:
        return m_templates > 0;
    }
}

Place PageScan::placeOfText() const
{
    if (m_raw == HtmlTag::Title)
        return m_drawings > 0 ? Place::Alternative : Place::Title;
    switch (m_headingLevel) {
    case 1:
        return Place::Heading1;
    case 2:
        return Place::Heading2;
    case 3:
        return Place::Heading3;
    default:
        return Place::Body;
    }
}

void PageScan::takeText(const PageToken &token)
{
    if (m_raw == HtmlTag::Style) {
        noteStyle(token.text);
        return;
    }
    if (isHidden())
        return;
    const Place place = placeOfText();
    if (place == Place::Title) {
        if (m_title.empty())
            m_title = firstOf(token.text, longestText);
    } else {
        if (m_headingLevel > 0 && m_heading.size() < longestText)
            m_heading += firstOf(token.text, longestText);
        m_isSeen = m_isSeen || showsSomething(token.text);
    }
    m_readable.add(place, token.text);
}

void PageScan::takeStart(const PageToken &tag)
{
    const quint16 traits = htmlTraits(tag.tag);
    if ((traits & HtmlTrait::Parts) != 0)
        partText();
    m_isSeen |= (traits & HtmlTrait::Visible) != 0;
    const bool isWhole = tag.selfClosing && m_drawings > 0;
    m_raw = (traits & HtmlTrait::RawText) != 0 && !isWhole ? tag.tag : HtmlTag::Other;
    if (m_context.faults)
        m_markup.takeStart(tag);
    takeByName(tag);
    if (!tag.attributes.empty()) {
        takeReferences(tag);
        takeNames(tag);
    }
}

void PageScan::partText()
{
    m_readable.endLine();
    if (!m_heading.empty() && m_heading.back() != ' ')
        m_heading += ' ';
}

void PageScan::takeByName(const PageToken &tag)
{
    switch (tag.tag) {
    case HtmlTag::H1:
    case HtmlTag::H2:
    case HtmlTag::H3:
    case HtmlTag::H4:
    case HtmlTag::H5:
    case HtmlTag::H6:
        startHeading(tag);
        break;
    case HtmlTag::Html:
        takeRoot(tag);
        break;
    case HtmlTag::Meta:
        takeMeta(tag);
        break;
    case HtmlTag::Base:
        takeBase(tag);
        break;
    case HtmlTag::Img:
    case HtmlTag::Area:
    case HtmlTag::Input:
        takePicture(tag);
        break;
    case HtmlTag::Template:
        ++m_templates;
        break;
    case HtmlTag::Svg:
        m_drawings += tag.selfClosing ? 0 : 1;
        break;
    default:
        break;
    }
}

void PageScan::takeEnd(const PageToken &tag)
{
    if ((htmlTraits(tag.tag) & HtmlTrait::Parts) != 0)
        partText();
    m_raw = HtmlTag::Other;
    if (m_context.faults)
        m_markup.takeEnd(tag);
    if (headingLevel(tag.tag) > 0)
        endHeading();
    else if (tag.tag == HtmlTag::Template)
        m_templates = std::max(0, m_templates - 1);
    else if (tag.tag == HtmlTag::Svg)
        m_drawings = std::max(0, m_drawings - 1);
}

void PageScan::startHeading(const PageToken &tag)
{
    endHeading();
    m_heading.clear();
    m_headingLevel = headingLevel(tag.tag);
    m_headingLine = lineAt(tag.start);
}

void PageScan::endHeading()
{
    if (m_headingLevel > 0) {
        const std::string text = plainText(m_heading);
        if (!text.empty())
            m_facts.headings.push_back({add(text), m_headingLine, m_headingLevel});
    }
    m_headingLevel = 0;
    m_heading.clear();
}

void PageScan::takeRoot(const PageToken &tag)
{
    std::string_view language = tag.attribute(htmlKey("lang"));
    if (language.empty())
        language = tag.attribute(htmlKey("xml:lang"));
    if (m_facts.language.length == 0 && !language.empty())
        m_facts.language = addDecoded(language);
}

void PageScan::takeMeta(const PageToken &tag)
{
    if (const std::string_view address = refreshAddress(tag); !address.empty()) {
        note(Kind::Link, address);
        m_isSeen = true; // readers see the page it leads to
    }
    if (m_charset.empty())
        m_charset = declaredCharset(tag);
    if (sameName(tag.attribute(htmlKey("name")), "keywords")) {
        m_readable.endLine();
        m_readable.add(Place::KeyWords, tag.attribute(htmlKey("content")));
        m_readable.endLine();
    }
}

void PageScan::takePicture(const PageToken &tag)
{
    const bool isPicture =
        tag.tag == HtmlTag::Img || (tag.tag == HtmlTag::Area && has(tag, htmlKey("href")))
        || (tag.tag == HtmlTag::Input && sameName(tag.attribute(htmlKey("type")), "image"));
    if (!isPicture)
        return;
    if (has(tag, htmlKey("alt"))) {
        m_readable.addBlank();
        m_readable.add(Place::Alternative, tag.attribute(htmlKey("alt")));
        m_readable.addBlank();
    } else if (m_context.faults) {
        const HtmlKey what = tag.tag == HtmlTag::Area ? htmlKey("href") : htmlKey("src");
        m_markup.note(PageFault::NoAlternativeText, tag.start, tag.attribute(what));
    }
}
