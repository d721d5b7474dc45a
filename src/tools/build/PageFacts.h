#pragma once

#include "tools/PageReference.h"

#include <QtGlobal>

#include <string>
#include <string_view>
#include <vector>

/// A piece of `PageFacts::text`.
struct TextSpan
{
    quint32 start = 0, length = 0;
};

/// Where a reference of a page leads.
enum class RefPlace : quint8 {
    ThisPage,       ///< empty or only an anchor
    Project,        ///< a file of the project, there or not
    OutsideProject, ///< relative, but above the project's folder
    Absolute,       ///< from the root of a disk or server
    Elsewhere,      ///< another machine, mail, a script
    LinkID,         ///< "qvlink:ID": a page that some book publishes under that identifier
};

/// One reference of a page.
struct PageRef
{
    PageReference::Kind kind = PageReference::Kind::Link;
    RefPlace place = RefPlace::ThisPage;
    quint32 line = 1;
    quint32 target = 0; ///< of Project and ThisPage: number in the table of targets
    TextSpan written;   ///< as the page writes it, character references resolved
    TextSpan anchor;    ///< decoded, without "#"; of LinkID the identifier
};

struct PageAnchor
{
    TextSpan name;
    quint32 line = 1;
    bool isId = true; ///< else the name of an <a>
};

/// A place that a page publishes under an identifier: <a data-qv-ibd="ID">.
struct PublishedLink
{
    TextSpan name; ///< the identifier
    quint32 line = 1;
    TextSpan anchor; ///< id or name of the same <a>; empty: the page itself
};

struct PageHeading
{
    TextSpan text;
    quint32 line = 1;
    quint8 level = 1; ///< 1 to 6
};

/// What the markup of a page is found wanting in.
enum class PageFault : quint8 {
    NoTitle,
    EmptyPage,         ///< nothing for a reader to see
    NoLanguage,        ///< <html> says none
    OtherLanguage,     ///< detail: what it says
    NoCharset,         ///< declares none, and is not plain ASCII
    WrongCharset,      ///< detail: what it declares; its bytes are something else
    DamagedText,       ///< bytes that are no text in its encoding
    DoubleId,          ///< detail: the id
    Unclosed,          ///< detail: the element
    StrayEnd,          ///< detail: the element; an end tag of nothing that is open
    UnclosedComment,   ///< runs to the end of the page
    CutOffTag,         ///< the page ends inside a tag
    NoAlternativeText, ///< detail: the picture
    LeftOverMarker,    ///< detail: "**Name**" of another project
    NulCharacter,
};

struct FoundFault
{
    PageFault fault = PageFault::NoTitle;
    quint32 line = 0; ///< 0: the page as a whole
    TextSpan detail;
};

/// What one page says, as far as the tools of a build ask. Compact: a project has hundreds of
/// thousands of references. All text is UTF-8.
struct PageFacts
{
    std::string text; ///< what the spans are pieces of
    TextSpan title;   ///< of <title>, as shown
    TextSpan language;
    std::vector<PageRef> refs;       ///< in the order of the page
    std::vector<PageAnchor> anchors; ///< in the order of the page
    std::vector<PageHeading> headings;
    std::vector<PublishedLink> linkIds;
    std::vector<FoundFault> faults;
    bool hasBase = false;

    [[nodiscard]] std::string_view of(TextSpan span) const
    {
        return std::string_view(text).substr(span.start, span.length);
    }
};
