#include "tools/checks/PageChecks.h"

#include "tools/links/LinkCheck.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct FaultWords
{
    QLatin1StringView code;
    const char *text; ///< %1: the detail
};

/// In the order of `PageFault`.
constexpr std::array<FaultWords, 15> faultWords{{
    {"PAGE01"_L1, QT_TRANSLATE_NOOP("PageChecks", "The page has no title.")},
    {"PAGE02"_L1, QT_TRANSLATE_NOOP("PageChecks", "The page shows nothing.")},
    {"PAGE03"_L1, QT_TRANSLATE_NOOP("PageChecks", "The page does not say its language.")},
    {"PAGE04"_L1, QT_TRANSLATE_NOOP("PageChecks", "The page says its language is \"%1\".")},
    {"PAGE05"_L1, QT_TRANSLATE_NOOP("PageChecks", "The page does not declare its encoding.")},
    {"PAGE06"_L1, QT_TRANSLATE_NOOP("PageChecks", "The page declares the encoding %1, but its "
                                                  "text is in another.")},
    {"PAGE07"_L1, QT_TRANSLATE_NOOP("PageChecks", "Some bytes are no text here.")},
    {"PAGE08"_L1, QT_TRANSLATE_NOOP("PageChecks", "The id \"%1\" stands further up already.")},
    {"PAGE09"_L1, QT_TRANSLATE_NOOP("PageChecks", "<%1> is never closed.")},
    {"PAGE10"_L1, QT_TRANSLATE_NOOP("PageChecks", "</%1> closes nothing.")},
    {"PAGE11"_L1, QT_TRANSLATE_NOOP("PageChecks", "The comment is never closed.")},
    {"PAGE12"_L1, QT_TRANSLATE_NOOP("PageChecks", "The page ends inside this tag.")},
    {"ASSET01"_L1, QT_TRANSLATE_NOOP("PageChecks", "The picture %1 has no alternative text.")},
    {"PAGE13"_L1, QT_TRANSLATE_NOOP("PageChecks", "%1 is the marker of another project.")},
    {"PAGE14"_L1, QT_TRANSLATE_NOOP("PageChecks", "The page holds a NUL character.")},
}};

QString tr(const char *text)
{
    return QCoreApplication::translate("PageChecks", text);
}

/// The beginning of what a page says, which may be of any length.
QString text(std::string_view utf8)
{
    constexpr size_t enough = 4000;
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(std::min(utf8.size(), enough)));
}

bool isLoadedFromOutside(const PageRef &ref)
{
    return ref.kind != PageReference::Kind::Link && ref.place == RefPlace::Elsewhere;
}

/// Addresses of another machine; the others hold their data themselves.
bool isNetworkAddress(std::string_view written)
{
    const auto begins = [written](std::string_view start) {
        return written.size() >= start.size()
               && std::equal(start.begin(), start.end(), written.begin(), [](char a, char b) {
                      return a == (b >= 'A' && b <= 'Z' ? b + 32 : b);
                  });
    };
    return begins("http:") || begins("https:") || begins("ftp:") || begins("//");
}

class PageCheck final
{
public:
    PageCheck(const ScannedPage &page, FindingList &findings)
        : m_page(page)
        , m_findings(findings)
    {
    }

    void takeFaults()
    {
        for (const FoundFault &found : m_page.facts.faults) {
            const FaultWords &words = faultWords[static_cast<size_t>(found.fault)];
            if (!m_findings.takes(words.code))
                continue;
            const QString detail = text(m_page.facts.of(found.detail));
            const QString sentence = tr(words.text);
            m_findings.add(words.code, static_cast<int>(found.line),
                           sentence.contains("%1"_L1) ? sentence.arg(detail) : sentence, detail);
        }
    }

    void takeOutside()
    {
        for (const PageRef &ref : m_page.facts.refs) {
            if (!isLoadedFromOutside(ref) || !isNetworkAddress(m_page.facts.of(ref.written)))
                continue;
            if (!m_findings.takes("ASSET03"_L1))
                continue;
            const QString address = text(m_page.facts.of(ref.written));
            m_findings.add("ASSET03"_L1, static_cast<int>(ref.line),
                           tr("The page loads %1 from another machine.").arg(address), address);
        }
    }

private:
    const ScannedPage &m_page;
    FindingList &m_findings;
};

} // namespace

void checkPages(const BuildInput &input, const ScannedPages &pages, const LinkCheck &links,
                FindingList &findings, const Progress &progress)
{
    auto bad = links.bad().begin();
    const bool looksOutside = findings.wants("ASSET03"_L1);
    for (size_t i = 0; i < pages.pages().size(); ++i) {
        const ScannedPage &page = pages.pages()[i];
        findings.startFile(ProjectListing::shown(pages.pathOf(page)));
        progress.step(static_cast<int>(i), static_cast<int>(pages.pages().size()));
        if (!page.problem.isEmpty() && findings.takes("PAGE15"_L1))
            findings.add("PAGE15"_L1, 0, page.problem);
        for (; bad != links.bad().end() && bad->page == i; ++bad)
            findings.addFound(findingOf(input, pages, *bad));
        PageCheck check(page, findings);
        check.takeFaults();
        if (looksOutside)
            check.takeOutside();
    }
}
