#include "tools/links/DocLinksFile.h"

#include "tools/build/DerivedXml.h"

#include <array>
#include <unordered_set>

namespace {

/// By `RefState`, as the file has it; "" for what it does not hold.
constexpr std::array<std::string_view, 10> stateNames{"",
                                                      "FileMissing",
                                                      "IsFolder",
                                                      "OtherLetterCase",
                                                      "SeveralSpellings",
                                                      "PlaceMissing",
                                                      "",
                                                      "",
                                                      "",
                                                      ""};

QString shown(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

struct Meaning
{
    quint32 target;
    std::string_view anchor;
    friend bool operator==(const Meaning &, const Meaning &) = default;
};

struct MeaningHash
{
    size_t operator()(const Meaning &meaning) const
    {
        return std::hash<std::string_view>()(meaning.anchor) * 31 + meaning.target;
    }
};

/// Writes the file page by page.
class Writer final
{
public:
    Writer(const ScannedPages &pages, const LinkCheck &check)
        : m_pages(pages)
        , m_bad(check.bad().begin())
        , m_badEnd(check.bad().end())
    {
        for (const std::string &target : pages.targets()) {
            m_targets.append(ProjectListing::shown(target));
            m_isPage.push_back(isPageName(m_targets.last())
                               || pages.listing().find(target).match
                                      == ProjectListing::Match::Folder);
        }
    }

    DocLinksFile write(const Progress &progress)
    {
        const auto count = static_cast<quint32>(m_pages.pages().size());
        startLine(0, "<QV_DocLinks>");
        for (quint32 number = 0; number < count; ++number) {
            progress.step(static_cast<int>(number), static_cast<int>(count));
            writePage(number);
        }
        startLine(0, "</QV_DocLinks>");
        m_xml.line();
        m_result.bytes = m_xml.bytes();
        return std::move(m_result);
    }

private:
    void writePage(quint32 number)
    {
        const ScannedPage &page = m_pages.pages()[number];
        m_written.clear();
        for (quint32 place = 0; place < page.facts.refs.size(); ++place) {
            const RefState state = stateOf(number, place);
            const PageRef &ref = page.facts.refs[place];
            if (isListed(page, ref, state)
                && m_written.insert({ref.target, page.facts.of(ref.anchor)}).second)
                writeLink(page, ref, state);
        }
        if (!m_written.empty())
            startLine(1, "</Page>");
    }

    RefState stateOf(quint32 page, quint32 ref)
    {
        if (m_bad == m_badEnd || m_bad->page != page || m_bad->ref != ref)
            return RefState::Good;
        return (m_bad++)->state;
    }

    [[nodiscard]] bool isListed(const ScannedPage &page, const PageRef &ref, RefState state) const
    {
        return ref.kind == PageReference::Kind::Link && ref.place == RefPlace::Project
               && (m_isPage[ref.target] || state != RefState::Good)
               && m_pages.targets()[ref.target] != m_pages.pathOf(page);
    }

    void writeLink(const ScannedPage &page, const PageRef &ref, RefState state)
    {
        if (m_written.size() == 1) {
            startLine(1, "<Page>");
            startLine(2, "<Page_File>");
            m_xml.text(ProjectListing::shown(m_pages.pathOf(page)));
            m_xml.markup("</Page_File>");
        }
        startLine(2, "<Page_Link");
        if (state != RefState::Good) {
            m_xml.markup(" State=\"");
            m_xml.markup(stateNames[static_cast<size_t>(state)]);
            m_xml.markup("\"");
        }
        m_xml.markup(">");
        m_xml.text(m_targets[ref.target]);
        if (ref.anchor.length > 0) {
            m_xml.markup("#");
            m_xml.text(shown(page.facts.of(ref.anchor)));
        }
        m_xml.markup("</Page_Link>");
        ++m_result.links;
    }

    void startLine(int depth, std::string_view markup)
    {
        constexpr std::string_view tabs = "\t\t";
        if (m_isBegun)
            m_xml.line();
        m_isBegun = true;
        m_xml.markup(tabs.substr(0, static_cast<size_t>(depth)));
        m_xml.markup(markup);
    }

    const ScannedPages &m_pages;
    std::vector<BadRef>::const_iterator m_bad, m_badEnd;
    QList<QString> m_targets;   ///< as they are shown
    std::vector<bool> m_isPage; ///< by target
    std::unordered_set<Meaning, MeaningHash> m_written;
    DerivedXml m_xml;
    bool m_isBegun = false;
    DocLinksFile m_result;
};

} // namespace

DocLinksFile docLinksFile(const ScannedPages &pages, const LinkCheck &check,
                          const Progress &progress)
{
    return Writer(pages, check).write(progress);
}
