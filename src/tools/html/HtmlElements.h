#pragma once

#include "tools/html/HtmlNames.h"

#include <QtGlobal>

#include <array>

/// The elements that HTML knows, as far as anything here depends on them.
enum class HtmlTag : quint8 {
    Other, // a name that HTML does not know, or one without any rule of its own
    A,
    Address,
    Applet,
    Area,
    Article,
    Aside,
    Audio,
    B,
    Base,
    Big,
    Blockquote,
    Body,
    Br,
    Button,
    Canvas,
    Caption,
    Center,
    Code,
    Col,
    Colgroup,
    Dd,
    Del,
    Details,
    Dialog,
    Dir,
    Div,
    Dl,
    Dt,
    Em,
    Embed,
    Fieldset,
    Figcaption,
    Figure,
    Font,
    Footer,
    Form,
    Frame,
    Frameset,
    H1,
    H2,
    H3,
    H4,
    H5,
    H6,
    Head,
    Header,
    Hgroup,
    Hr,
    Html,
    I,
    Iframe,
    Image,
    Img,
    Input,
    Ins,
    Legend,
    Li,
    Link,
    Listing,
    Main,
    Marquee,
    Math,
    Menu,
    Meta,
    Nav,
    Noembed,
    Noframes,
    Noscript,
    Object,
    Ol,
    Optgroup,
    Option,
    P,
    Param,
    Picture,
    Plaintext,
    Pre,
    Rb,
    Rp,
    Rt,
    Rtc,
    Script,
    Search,
    Section,
    Select,
    Small,
    Source,
    Span,
    Strong,
    Style,
    Sub,
    Summary,
    Sup,
    Svg,
    Table,
    Tbody,
    Td,
    Template,
    Textarea,
    Tfoot,
    Th,
    Thead,
    Title,
    Tr,
    Track,
    Tt,
    U,
    Ul,
    Video,
    Wbr,
    Xmp,
    Count
};

namespace HtmlTrait {
enum : quint16 {
    Void = 1,           ///< has no content and no end tag
    RawText = 2,        ///< holds text, no tags
    OptionalEnd = 4,    ///< its end tag may be left out
    OptionalStart = 8,  ///< its start tag may be left out, so that the end tag may stand alone
    Parts = 16,         ///< begins and ends a line of what the reader sees
    EndsParagraph = 32, ///< its start tag ends an open <p>
    Scope = 64,         ///< end tags inside it do not reach what is open around it
    TableScope = 128,   ///< the same for the parts of a table
    Hidden = 256,       ///< nothing in it is seen
    Visible = 512,      ///< something to see by itself
};
} // namespace HtmlTrait

/// `Other` for a name it does not know.
HtmlTag htmlTag(HtmlKey key);
/// A sum of `HtmlTrait`s, by the number of the tag.
extern const std::array<quint16, size_t(HtmlTag::Count)> htmlTraitsOf;
inline quint16 htmlTraits(HtmlTag tag)
{
    return htmlTraitsOf[static_cast<size_t>(tag)];
}
