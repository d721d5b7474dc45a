#include "tools/html/HtmlElements.h"

#include <array>

namespace {

using namespace HtmlTrait;

struct Element
{
    std::string_view name;
    quint16 traits;
};

// In the order of HtmlTag.
constexpr Element elements[]{
    {"", 0},
    {"a", 0},
    {"address", Parts | EndsParagraph},
    {"applet", Scope | Visible},
    {"area", Void},
    {"article", Parts | EndsParagraph},
    {"aside", Parts | EndsParagraph},
    {"audio", Parts | Visible},
    {"b", 0},
    {"base", Void},
    {"big", 0},
    {"blockquote", Parts | EndsParagraph},
    {"body", OptionalEnd | OptionalStart | Parts},
    {"br", Void | Parts},
    {"button", Parts | Scope | Visible},
    {"canvas", Parts | Visible},
    {"caption", OptionalEnd | Parts | Scope},
    {"center", Parts | EndsParagraph},
    {"code", 0},
    {"col", Void},
    {"colgroup", OptionalEnd | OptionalStart},
    {"dd", OptionalEnd | Parts | EndsParagraph},
    {"del", 0},
    {"details", Parts | EndsParagraph},
    {"dialog", Parts | EndsParagraph},
    {"dir", Parts | EndsParagraph},
    {"div", Parts | EndsParagraph},
    {"dl", Parts | EndsParagraph},
    {"dt", OptionalEnd | Parts | EndsParagraph},
    {"em", 0},
    {"embed", Void | Visible},
    {"fieldset", Parts | EndsParagraph},
    {"figcaption", Parts | EndsParagraph},
    {"figure", Parts | EndsParagraph},
    {"font", 0},
    {"footer", Parts | EndsParagraph},
    {"form", Parts | EndsParagraph},
    {"frame", Void | Visible},
    {"frameset", Parts},
    {"h1", Parts | EndsParagraph},
    {"h2", Parts | EndsParagraph},
    {"h3", Parts | EndsParagraph},
    {"h4", Parts | EndsParagraph},
    {"h5", Parts | EndsParagraph},
    {"h6", Parts | EndsParagraph},
    {"head", OptionalEnd | OptionalStart | Hidden},
    {"header", Parts | EndsParagraph},
    {"hgroup", Parts | EndsParagraph},
    {"hr", Void | Parts | EndsParagraph},
    {"html", OptionalEnd | OptionalStart | Parts | Scope | TableScope},
    {"i", 0},
    {"iframe", RawText | Parts | Hidden | Visible},
    {"image", Void | Visible},
    {"img", Void | Visible},
    {"input", Void | Visible},
    {"ins", 0},
    {"legend", Parts},
    {"li", OptionalEnd | Parts | EndsParagraph},
    {"link", Void},
    {"listing", Parts | EndsParagraph},
    {"main", Parts | EndsParagraph},
    {"marquee", Parts | Scope},
    {"math", Visible},
    {"menu", Parts | EndsParagraph},
    {"meta", Void},
    {"nav", Parts | EndsParagraph},
    {"noembed", RawText | Hidden},
    {"noframes", RawText | Parts | Hidden},
    {"noscript", Parts},
    {"object", Parts | Scope | Visible},
    {"ol", Parts | EndsParagraph},
    {"optgroup", OptionalEnd | Parts},
    {"option", OptionalEnd | Parts},
    {"p", OptionalEnd | Parts | EndsParagraph},
    {"param", Void},
    {"picture", 0},
    {"plaintext", RawText | OptionalEnd | Parts | EndsParagraph},
    {"pre", Parts | EndsParagraph},
    {"rb", OptionalEnd},
    {"rp", OptionalEnd},
    {"rt", OptionalEnd},
    {"rtc", OptionalEnd},
    {"script", RawText | Hidden},
    {"search", Parts | EndsParagraph},
    {"section", Parts | EndsParagraph},
    {"select", Parts | Visible},
    {"small", 0},
    {"source", Void},
    {"span", 0},
    {"strong", 0},
    {"style", RawText | Hidden},
    {"sub", 0},
    {"summary", Parts | EndsParagraph},
    {"sup", 0},
    {"svg", Visible},
    {"table", Parts | EndsParagraph | Scope | TableScope},
    {"tbody", OptionalEnd | OptionalStart | Parts},
    {"td", OptionalEnd | Parts | Scope},
    {"template", Scope | TableScope | Hidden},
    {"textarea", RawText | Parts | Visible},
    {"tfoot", OptionalEnd | Parts},
    {"th", OptionalEnd | Parts | Scope},
    {"thead", OptionalEnd | Parts},
    {"title", RawText | Parts | Hidden},
    {"tr", OptionalEnd | Parts},
    {"track", Void},
    {"tt", 0},
    {"u", 0},
    {"ul", Parts | EndsParagraph},
    {"video", Parts | Visible},
    {"wbr", Void},
    {"xmp", RawText | Parts | EndsParagraph},
};
static_assert(std::size(elements) == size_t(HtmlTag::Count));

constexpr size_t places = 512;

constexpr size_t placeOf(HtmlKey key)
{
    return static_cast<size_t>((key * 0x9E3779B97F4A7C15U) >> 55U);
}

struct Entry
{
    HtmlKey key = 0;
    HtmlTag tag = HtmlTag::Other;
};

/// Every name stands at its place or, where that is taken, at the next free one.
constexpr std::array<Entry, places> makeTable()
{
    std::array<Entry, places> table{};
    for (size_t tag = 1; tag < std::size(elements); ++tag) {
        const HtmlKey key = htmlKey(elements[tag].name);
        size_t place = placeOf(key);
        while (table[place].key != 0)
            place = (place + 1) % places;
        table[place] = {key, static_cast<HtmlTag>(tag)};
    }
    return table;
}

constexpr std::array<Entry, places> table = makeTable();

constexpr std::array<quint16, size_t(HtmlTag::Count)> makeTraits()
{
    std::array<quint16, size_t(HtmlTag::Count)> traits{};
    for (size_t tag = 0; tag < traits.size(); ++tag)
        traits[tag] = elements[tag].traits;
    return traits;
}

} // namespace

HtmlTag htmlTag(HtmlKey key)
{
    size_t place = placeOf(key);
    while (table[place].key != key && table[place].key != 0)
        place = (place + 1) % places;
    return table[place].tag;
}

constinit const std::array<quint16, size_t(HtmlTag::Count)> htmlTraitsOf = makeTraits();
