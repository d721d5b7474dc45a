#include "tools/html/TagReferences.h"

#include "tools/html/CssScan.h"
#include "tools/html/PageUnits.h"

#include <algorithm>
#include <optional>

namespace {

using Kind = PageReference::Kind;

template <typename View>
View piece(View text, size_t from, size_t to)
{
    using Size = decltype(text.size());
    return View(text.data() + from, static_cast<Size>(to - from));
}

template <typename View>
View trimmed(View text)
{
    size_t from = 0;
    size_t to = static_cast<size_t>(text.size());
    while (from < to && isBlank(unit(text.data()[from])))
        ++from;
    while (to > from && isBlank(unit(text.data()[to - 1])))
        --to;
    return piece(text, from, to);
}

/// What stands behind `word`, letter case aside; empty when it is not there.
template <typename View>
View behind(View text, std::string_view word)
{
    const auto size = static_cast<size_t>(text.size());
    for (size_t at = 0; at + word.size() <= size; ++at) {
        if (sameName(piece(text, at, at + word.size()), word))
            return piece(text, at + word.size(), size);
    }
    return {};
}

/// Up to the first character that `isEnd` says is one.
template <typename View, typename IsEnd>
View upTo(View text, IsEnd isEnd)
{
    size_t end = 0;
    while (end < static_cast<size_t>(text.size()) && !isEnd(unit(text.data()[end])))
        ++end;
    return piece(text, 0, end);
}

/// One word of a list such as rel="alternate stylesheet".
template <typename View>
bool holdsWord(View list, std::string_view word)
{
    for (View rest = trimmed(list); rest.size() > 0;) {
        const View first = upTo(rest, isBlank);
        if (sameName(first, word))
            return true;
        rest = trimmed(
            piece(rest, static_cast<size_t>(first.size()), static_cast<size_t>(rest.size())));
    }
    return false;
}

bool mayRefer(HtmlKey attribute)
{
    switch (attribute) {
    case htmlKey("href"):
    case htmlKey("src"):
    case htmlKey("srcset"):
    case htmlKey("style"):
    case htmlKey("background"):
    case htmlKey("poster"):
    case htmlKey("data"):
    case htmlKey("xlink:href"):
        return true;
    default:
        return false;
    }
}

bool isLinked(HtmlTag tag)
{
    return tag == HtmlTag::A || tag == HtmlTag::Area;
}

/// What the source of an element is; nothing for one whose `src` means nothing.
std::optional<Kind> sourceKind(HtmlTag tag)
{
    switch (tag) {
    case HtmlTag::Frame:
    case HtmlTag::Iframe:
        return Kind::Link;
    case HtmlTag::Img:
    case HtmlTag::Script:
    case HtmlTag::Input:
    case HtmlTag::Source:
    case HtmlTag::Audio:
    case HtmlTag::Video:
    case HtmlTag::Track:
    case HtmlTag::Embed:
        return Kind::Resource;
    default:
        return std::nullopt;
    }
}

} // namespace

template <typename View>
auto TagReferences<View>::of(const BasicHtmlToken<View> &tag) -> const std::vector<Found> &
{
    m_found.clear();
    m_seen.clear();
    for (const Attribute &attribute : tag.attributes) {
        if (!mayRefer(attribute.key)
            || std::find(m_seen.begin(), m_seen.end(), attribute.key) != m_seen.end())
            continue; // of two with the same name the first counts
        m_seen.push_back(attribute.key);
        if (attribute.value.size() > 0)
            takeAttribute(tag, attribute);
    }
    return m_found;
}

template <typename View>
void TagReferences<View>::takeAttribute(const BasicHtmlToken<View> &tag, const Attribute &attribute)
{
    switch (attribute.key) {
    case htmlKey("href"):
        if (isLinked(tag.tag))
            note(Kind::Link, attribute.value);
        else if (tag.tag == HtmlTag::Link)
            takeLink(tag, attribute.value);
        else if (tag.tag == HtmlTag::Image)
            note(Kind::Resource, attribute.value);
        break;
    case htmlKey("src"):
        if (const auto kind = sourceKind(tag.tag))
            note(*kind, attribute.value);
        break;
    case htmlKey("srcset"):
        takeSourceSet(attribute.value);
        break;
    case htmlKey("style"):
        takeStyle(attribute.value);
        break;
    case htmlKey("background"):
        note(Kind::Resource, attribute.value);
        break;
    case htmlKey("poster"):
        if (tag.tag == HtmlTag::Video)
            note(Kind::Resource, attribute.value);
        break;
    case htmlKey("data"):
        if (tag.tag == HtmlTag::Object)
            note(Kind::Resource, attribute.value);
        break;
    case htmlKey("xlink:href"):
        if (tag.tag == HtmlTag::Image)
            note(Kind::Resource, attribute.value);
        break;
    default:
        break;
    }
}

template <typename View>
void TagReferences<View>::takeLink(const BasicHtmlToken<View> &tag, View address)
{
    const View rel = tag.attribute(htmlKey("rel"));
    if (holdsWord(rel, "stylesheet"))
        note(Kind::Style, address);
    else if (holdsWord(rel, "icon"))
        note(Kind::Resource, address);
    else
        note(Kind::Link, address);
}

/// "small.png 1x, large.png 2x"
template <typename View>
void TagReferences<View>::takeSourceSet(View list)
{
    for (View rest = list; rest.size() > 0;) {
        const View entry = upTo(rest, [](char32_t c) { return c == ','; });
        note(Kind::Resource, upTo(trimmed(entry), isBlank));
        const auto next = static_cast<size_t>(entry.size()) + 1;
        rest = next < static_cast<size_t>(rest.size())
                   ? piece(rest, next, static_cast<size_t>(rest.size()))
                   : View();
    }
}

template <typename View>
void TagReferences<View>::takeStyle(View css)
{
    const QList<PageReference> found = scanCss(css);
    for (const PageReference &reference : found) {
        const auto start = static_cast<size_t>(reference.start);
        note(reference.kind, piece(css, start, start + static_cast<size_t>(reference.length)));
    }
}

template <typename View>
void TagReferences<View>::note(Kind kind, View value)
{
    if (value.size() > 0)
        m_found.push_back({kind, value});
}

template <typename View>
View refreshAddress(const BasicHtmlToken<View> &meta)
{
    if (!sameName(meta.attribute(htmlKey("http-equiv")), "refresh"))
        return {};
    const View address = trimmed(behind(meta.attribute(htmlKey("content")), "url="));
    const auto size = static_cast<size_t>(address.size());
    if (size < 2)
        return address;
    const char32_t first = unit(address.data()[0]);
    const bool quoted = (first == '"' || first == '\'') && unit(address.data()[size - 1]) == first;
    return quoted ? piece(address, 1, size - 1) : address;
}

template <typename View>
View declaredCharset(const BasicHtmlToken<View> &meta)
{
    const View charset = trimmed(meta.attribute(htmlKey("charset")));
    if (charset.size() > 0 || !sameName(meta.attribute(htmlKey("http-equiv")), "content-type"))
        return charset;
    const View rest = behind(meta.attribute(htmlKey("content")), "charset=");
    return trimmed(upTo(rest, [](char32_t c) { return c == ';'; }));
}

template class TagReferences<QStringView>;
template class TagReferences<std::string_view>;
template QStringView refreshAddress(const BasicHtmlToken<QStringView> &);
template std::string_view refreshAddress(const BasicHtmlToken<std::string_view> &);
template QStringView declaredCharset(const BasicHtmlToken<QStringView> &);
template std::string_view declaredCharset(const BasicHtmlToken<std::string_view> &);
