#include "tools/build/ReadableText.h"

#include "tools/html/HtmlEntities.h"

#include <algorithm>

namespace {

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r' && c != '\v');
}

/// Copies what a character reference means, or one character that is none.
const char *copyReference(const char *at, const char *end, char *&to)
{
    const std::string_view rest(at, static_cast<size_t>(end - at));
    const CharacterReference reference =
        *at == '&' ? characterReference(rest, ReferenceIn::Text) : CharacterReference();
    if (reference.length == 0) {
        *to++ = *at;
        return at + 1;
    }
    std::string meant;
    appendMeaning(meant, reference);
    to = std::copy(meant.begin(), meant.end(), to);
    return at + reference.length;
}

/// Copies one word; returns where it ends in the page.
const char *copyWord(const char *at, const char *end, char *&to)
{
    while (at < end) {
        const char c = *at;
        if (static_cast<unsigned char>(c) > ' ' && c != '&') { // nearly always
            *to++ = c;
            ++at;
        } else if (isBlank(c)) {
            break;
        } else {
            at = copyReference(at, end, to);
        }
    }
    return at;
}

} // namespace

void ReadableText::begin(ReadablePage *page)
{
    m_page = page;
    m_blank = m_lineEnd = false;
    if (page != nullptr)
        page->clear();
}

void ReadableText::add(ReadablePage::Place place, std::string_view html)
{
    if (m_page == nullptr || html.empty())
        return;
    std::string &text = m_page->text;
    const size_t before = text.size();
    text.resize(before + html.size() + 1); // a reference is never shorter than what it means
    char *const start = text.data() + before;
    char *to = start;
    const char *at = html.data();
    const char *const end = at + html.size();
    while (at < end) {
        if (isBlank(*at)) {
            m_blank = true;
            ++at;
            continue;
        }
        to = before + static_cast<size_t>(to - start) > 0 ? separate(to) : to;
        m_blank = m_lineEnd = false;
        at = copyWord(at, end, to);
    }
    text.resize(before + static_cast<size_t>(to - start));
    m_page->extend(place, text.size() - before);
}

char *ReadableText::separate(char *to)
{
    if (m_lineEnd)
        *to++ = '\n';
    else if (m_blank)
        *to++ = ' ';
    return to;
}
