#include "tools/build/PageScan.h"

#include "startup/CharsetNames.h"

#include <algorithm>

namespace {

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// What <?xml encoding="..."?> at the start of a page says.
std::string_view xmlCharset(std::string_view page)
{
    constexpr std::string_view word = "encoding=";
    if (!page.starts_with("<?xml"))
        return {};
    const std::string_view declaration = page.substr(0, page.find('>'));
    const size_t at = declaration.find(word);
    if (at == std::string_view::npos || at + word.size() >= declaration.size())
        return {};
    const std::string_view quoted = declaration.substr(at + word.size());
    const size_t end = quoted.find(quoted[0], 1);
    return end == std::string_view::npos ? std::string_view() : quoted.substr(1, end - 1);
}

/// "**Name**" in a reference; empty when there is none.
std::string_view markerIn(std::string_view written)
{
    const size_t from = written.find("**");
    const size_t to = from == std::string_view::npos ? from : written.find("**", from + 3);
    const std::string_view found =
        to == std::string_view::npos ? std::string_view() : written.substr(from, to + 2 - from);
    return found.find('/') == std::string_view::npos ? found : std::string_view();
}

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

/// `value` is the place in the page, `written` the same decoded.
void PageScan::noteMarker(std::string_view written, std::string_view value)
{
    const std::string_view marker = markerIn(written);
    if (marker.empty())
        return;
    const QString name = text(marker.substr(2, marker.size() - 4));
    if (name.compare(m_context.project, Qt::CaseInsensitive) != 0)
        m_markup.note(PageFault::LeftOverMarker, placeOf(value), markerIn(value));
}

void PageScan::noteCutOff(const PageTokens &tokens)
{
    if (tokens.cutOff() == CutOff::Tag)
        m_markup.note(PageFault::CutOffTag, tokens.cutOffAt());
    else if (tokens.cutOff() == CutOff::Comment)
        m_markup.note(PageFault::UnclosedComment, tokens.cutOffAt());
}

void PageScan::noteWholePage(const PageBytes &bytes)
{
    const auto whole = [this](PageFault fault, TextSpan detail = {}) {
        m_facts.faults.push_back({fault, 0, detail});
    };
    if (m_facts.title.length == 0)
        whole(PageFault::NoTitle);
    if (!m_isSeen)
        whole(PageFault::EmptyPage);
    const std::string_view language = m_facts.of(m_facts.language);
    const std::string_view wanted = std::string_view(m_languageTag).substr(0, 2);
    if (language.empty())
        whole(PageFault::NoLanguage);
    else if (!wanted.empty() && !sameName(language.substr(0, language.find('-')), wanted))
        whole(PageFault::OtherLanguage, m_facts.language);
    noteCharset(bytes.encoding());
    noteBytes(bytes);
}

/// A byte-order mark says more than any declaration.
void PageScan::noteCharset(const PageEncoding &encoding)
{
    if (m_charset.empty())
        m_charset = xmlCharset(m_page);
    if (encoding.mark || isAscii(m_page))
        return;
    if (m_charset.empty())
        m_facts.faults.push_back({PageFault::NoCharset, 0, {}});
    else if (encodingFor(text(m_charset)).compare(encoding.name, Qt::CaseInsensitive) != 0)
        m_facts.faults.push_back({PageFault::WrongCharset, 0, add(m_charset)});
}

void PageScan::noteBytes(const PageBytes &bytes)
{
    if (bytes.isDamaged()) {
        const size_t at = m_page.find("\uFFFD");
        m_markup.note(PageFault::DamagedText,
                      static_cast<qsizetype>(at == std::string_view::npos ? 0 : at));
    }
    if (const size_t at = m_page.find('\0'); at != std::string_view::npos)
        m_markup.note(PageFault::NulCharacter, static_cast<qsizetype>(at));
}

/// Takes over what was noted by its place in the page.
void PageScan::addFaults()
{
    for (const MarkupFaults::Found &found : m_markup.finish()) {
        const quint32 line = lineAt(found.at);
        m_facts.faults.push_back({found.fault, line, add(found.detail)});
    }
}
