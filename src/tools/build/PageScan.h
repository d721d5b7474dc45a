#pragma once

#include "tools/build/MarkupFaults.h"
#include "tools/build/PageBytes.h"
#include "tools/build/ReadableText.h"
#include "tools/build/ReferenceResolver.h"
#include "tools/html/TagReferences.h"

/// Of which project a page is, and what is asked of it.
struct ScanContext
{
    QString project;    ///< name of its folder
    QString language;   ///< ENU, DEU, ...
    bool faults = true; ///< else what a page is found wanting in stays empty
};

/// Reads pages and style sheets, one after the other, in one pass each. One object is for one
/// thread; the table of targets is shared.
class PageScan final
{
public:
    PageScan(ScanContext context, TargetTable &targets);

    /// What the page at `path` says. `text` takes what its readers see; null when nobody asks.
    PageFacts page(const QByteArray &bytes, std::string_view path, ReadablePage *text = nullptr);
    PageFacts styleSheet(const QByteArray &bytes, std::string_view path);

private:
    void begin(std::string_view page, std::string_view path);
    void scan(ReadablePage *text);
    void takeText(const PageToken &token);
    void takeStart(const PageToken &tag);
    void partText();
    void takeByName(const PageToken &tag);
    void takeEnd(const PageToken &tag);
    void takeReferences(const PageToken &tag);
    void takeNames(const PageToken &tag);
    void takeRoot(const PageToken &tag);
    void takeMeta(const PageToken &tag);
    void takeBase(const PageToken &tag);
    void takePicture(const PageToken &tag);
    void startHeading(const PageToken &tag);
    void endHeading();
    void note(PageReference::Kind kind, std::string_view value);
    void resolve(PageRef &reference);
    void noteStyle(std::string_view css);
    void noteMarker(std::string_view written, std::string_view value);

    void noteWholePage(const PageBytes &bytes);
    void noteCharset(const PageEncoding &encoding);
    void noteBytes(const PageBytes &bytes);
    void noteCutOff(const PageTokens &tokens);
    void addFaults();

    [[nodiscard]] qsizetype placeOf(std::string_view piece) const;
    [[nodiscard]] quint32 lineAt(qsizetype place);
    [[nodiscard]] TextSpan add(std::string_view text);
    [[nodiscard]] TextSpan addDecoded(std::string_view html);
    [[nodiscard]] ReadablePage::Place placeOfText() const;
    [[nodiscard]] bool isHidden() const;

    const ScanContext m_context;
    const std::string m_languageTag; ///< "en"; empty for an unknown language
    ReferenceResolver m_resolver;
    TagReferences<std::string_view> m_references;
    MarkupFaults m_markup;
    ReadableText m_readable;

    // Of the page at hand; used again for the next.
    PageFacts m_facts;
    std::string_view m_page;
    qsizetype m_linePlace = 0; ///< `m_line` is the line of this place
    quint32 m_line = 1;
    std::string m_title, m_heading, m_charset;
    HtmlTag m_raw = HtmlTag::Other; ///< the element whose raw text comes next
    int m_templates = 0;            ///< open ones; nothing in them is seen
    int m_drawings = 0;             ///< open <svg>, whose <title> is not the page's
    quint8 m_headingLevel = 0;      ///< 0: in none
    quint32 m_headingLine = 0;
    bool m_isSeen = false; ///< something for a reader was met
};
