#include "tools/html/HtmlTokens.h"

#include <algorithm>

namespace {

const char *find(const char *from, const char *end, char c)
{
    const size_t length = static_cast<size_t>(end - from);
    const char *found = std::char_traits<char>::find(from, length, c);
    return found == nullptr ? end : found;
}

const char16_t *find(const char16_t *from, const char16_t *end, char c)
{
    const qsizetype at = QStringView(from, end).indexOf(QLatin1Char(c));
    return at < 0 ? end : from + at;
}

quint8 codeOf(char c)
{
    return HtmlName::codes[static_cast<unsigned char>(c)];
}

quint8 codeOf(char16_t c)
{
    return c < HtmlName::codes.size() ? HtmlName::codes[c] : quint8(0);
}

bool isLetter(quint8 code)
{
    return code >= 1 && code <= 26;
}

template <typename Character>
bool isBlank(Character c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f';
}

constexpr char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

constexpr char16_t lower(char16_t c)
{
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

template <typename Character>
bool equalFolded(const Character *a, size_t size, std::string_view b)
{
    return size == b.size() && std::equal(b.begin(), b.end(), a, [](char x, Character y) {
               return lower(static_cast<Character>(x)) == lower(y);
           });
}

const char16_t *begin(QStringView text)
{
    return text.utf16();
}

const char *begin(std::string_view text)
{
    return text.data();
}

} // namespace

bool sameName(QStringView a, std::string_view b)
{
    return equalFolded(a.utf16(), static_cast<size_t>(a.size()), b);
}

bool sameName(std::string_view a, std::string_view b)
{
    return equalFolded(a.data(), a.size(), b);
}

template <typename View>
BasicHtmlTokens<View>::BasicHtmlTokens(View page)
    : m_begin(begin(page))
    , m_at(m_begin)
    , m_end(m_begin + page.size())
{
}

template <typename View>
View BasicHtmlTokens<View>::view(At from, At to) const
{
    using Size = decltype(View().size());
    return View(from, static_cast<Size>(to - from));
}

template <typename View>
auto BasicHtmlTokens<View>::next() -> const Token &
{
    if (m_rawElement != HtmlTag::Other) {
        const At end = rawTextEnd();
        m_rawElement = HtmlTag::Other;
        if (end > m_at) {
            readText(end);
            return m_token;
        }
    }
    while (!atEnd()) {
        if (*m_at != '<') {
            readText(find(m_at, m_end, '<'));
            return m_token;
        }
        if (readMarkup())
            return m_token;
    }
    m_token.kind = Kind::End;
    m_token.start = m_end - m_begin;
    m_token.text = {};
    m_token.attributes.clear();
    return m_token;
}

/// At a "<": reads a tag, or a "<" that is only text; false when it was a comment or the like.
template <typename View>
bool BasicHtmlTokens<View>::readMarkup()
{
    const At next = m_at + 1;
    if (next < m_end && isLetter(codeOf(*next)))
        return readTag(Kind::StartTag, next);
    if (next + 1 < m_end && *next == '/' && isLetter(codeOf(next[1])))
        return readTag(Kind::EndTag, next + 1);
    if (startsWith(next, "!--")) {
        passComment();
        return false;
    }
    if (next + 1 < m_end && (*next == '!' || *next == '?' || *next == '/')) {
        passDeclaration();
        return false;
    }
    readText(find(next, m_end, '<'));
    return true;
}

template <typename View>
void BasicHtmlTokens<View>::readText(At end)
{
    m_token.kind = Kind::Text;
    m_token.tag = HtmlTag::Other;
    m_token.start = m_at - m_begin;
    m_token.text = view(m_at, end);
    m_token.attributes.clear();
    m_at = end;
}

/// A tag that the end of the page cuts off is dropped.
template <typename View>
bool BasicHtmlTokens<View>::readTag(Kind kind, At name)
{
    const At from = m_at;
    m_at = name;
    const HtmlKey key = readName(false);
    m_token.kind = kind;
    m_token.start = from - m_begin;
    m_token.text = view(name, m_at);
    m_token.tag = htmlTag(key);
    if (!readAttributes()) {
        noteCutOff(CutOff::Tag, from);
        return false;
    }
    m_rawKey = key;
    enterElement();
    return true;
}

template <typename View>
void BasicHtmlTokens<View>::enterElement()
{
    const bool isStart = m_token.kind == Kind::StartTag;
    if (m_token.tag == HtmlTag::Svg || m_token.tag == HtmlTag::Math) {
        if (!isStart)
            m_foreign = std::max(0, m_foreign - 1);
        else if (!m_token.selfClosing)
            ++m_foreign;
    }
    if (isStart && (htmlTraits(m_token.tag) & HtmlTrait::RawText) != 0
        && !(m_foreign > 0 && m_token.selfClosing))
        m_rawElement = m_token.tag;
}

template <typename View>
void BasicHtmlTokens<View>::noteCutOff(CutOff what, At from)
{
    m_cutOff = what;
    m_cutOffAt = from - m_begin;
}

/// Goes to the end of the name; 0 for one that no rule knows.
template <typename View>
HtmlKey BasicHtmlTokens<View>::readName(bool ofAttribute)
{
    const At from = m_at;
    HtmlKey key = 0;
    bool known = true;
    while (!atEnd()) {
        const quint8 code = codeOf(*m_at);
        if (code == HtmlName::ends || (ofAttribute && code == HtmlName::equalsSign && m_at > from))
            break;
        known &= code != 0 && code != HtmlName::equalsSign;
        key = key * 40 + code;
        ++m_at;
    }
    return known && m_at - from <= qsizetype(HtmlName::longest) ? key : 0;
}

template <typename View>
bool BasicHtmlTokens<View>::readAttributes()
{
    m_token.attributes.clear();
    m_token.selfClosing = false;
    while (!atEnd()) {
        const Character c = *m_at;
        if (c == '>') {
            ++m_at;
            return true;
        }
        if (c == '/' || isBlank(c)) {
            m_token.selfClosing = c == '/';
            ++m_at;
        } else {
            m_token.selfClosing = false;
            readAttribute();
        }
    }
    return false;
}

template <typename View>
void BasicHtmlTokens<View>::readAttribute()
{
    const At name = m_at;
    const HtmlKey key = readName(true);
    BasicHtmlAttribute<View> attribute{view(name, m_at), {}, key};
    passBlanks();
    if (!atEnd() && *m_at == '=') {
        ++m_at;
        passBlanks();
        attribute.value = readValue();
    }
    m_token.attributes.push_back(attribute);
}

template <typename View>
View BasicHtmlTokens<View>::readValue()
{
    if (atEnd())
        return {};
    const Character quote = *m_at;
    if (quote == '"' || quote == '\'') {
        const At from = m_at + 1;
        const At end = find(from, m_end, static_cast<char>(quote));
        m_at = end == m_end ? end : end + 1;
        return view(from, end);
    }
    const At from = m_at;
    while (!atEnd() && !isBlank(*m_at) && *m_at != '>')
        ++m_at;
    return view(from, m_at);
}

template <typename View>
void BasicHtmlTokens<View>::passBlanks()
{
    while (!atEnd() && isBlank(*m_at))
        ++m_at;
}

/// "<!-->" and "<!--->" are whole comments; "--!>" ends one too.
template <typename View>
void BasicHtmlTokens<View>::passComment()
{
    const At from = m_at;
    const At body = m_at + 4;
    if (startsWith(body, ">") || startsWith(body, "->")) {
        m_at = find(body, m_end, '>') + 1;
        return;
    }
    for (At end = find(body, m_end, '>'); end != m_end; end = find(end + 1, m_end, '>')) {
        const bool plain = end - body >= 2 && end[-1] == '-' && end[-2] == '-';
        const bool loud = end - body >= 3 && end[-1] == '!' && end[-2] == '-' && end[-3] == '-';
        if (plain || loud) {
            m_at = end + 1;
            return;
        }
    }
    noteCutOff(CutOff::Comment, from);
    m_at = m_end;
}

template <typename View>
void BasicHtmlTokens<View>::passDeclaration()
{
    const At end = find(m_at, m_end, '>');
    if (end == m_end)
        noteCutOff(CutOff::Tag, m_at);
    m_at = end == m_end ? end : end + 1;
}

template <typename View>
auto BasicHtmlTokens<View>::rawTextEnd() const -> At
{
    if (m_rawElement == HtmlTag::Plaintext)
        return m_end;
    if (m_rawElement == HtmlTag::Script)
        return scriptEnd();
    At at = find(m_at, m_end, '<');
    while (at != m_end && !isEndTag(at, m_rawKey))
        at = find(at + 1, m_end, '<');
    return at;
}

/// Between "<!--" and "-->" a script may hold "<script>...</script>" without ending.
template <typename View>
auto BasicHtmlTokens<View>::scriptEnd() const -> At
{
    bool inComment = false;
    bool inInner = false;
    for (At at = find(m_at, m_end, '<'); at < m_end; ++at) {
        if (inComment && *at == '-' && startsWith(at, "-->")) {
            inComment = inInner = false;
        } else if (*at == '<' && startsWith(at, "<!--")) {
            inComment = true;
            at += 1; // "<!-->" ends at once
        } else if (*at == '<' && isEndTag(at, m_rawKey)) {
            if (!inInner)
                return at;
            inInner = false;
        } else if (*at == '<' && inComment && m_end - at > 7 && equalFolded(at + 1, 6, "script")
                   && codeOf(at[7]) == HtmlName::ends) {
            inInner = true;
        }
        if (!inComment)
            at = find(at + 1, m_end, '<') - 1;
    }
    return m_end;
}

template <typename View>
bool BasicHtmlTokens<View>::isEndTag(At at, HtmlKey name) const
{
    if (m_end - at < 3 || at[1] != '/')
        return false;
    HtmlKey key = 0;
    const At last = std::min(m_end, at + 3 + HtmlName::longest);
    for (At letter = at + 2; letter < last; ++letter) {
        const quint8 code = codeOf(*letter);
        if (code == HtmlName::ends)
            return key == name;
        if (code == 0 || code == HtmlName::equalsSign)
            return false;
        key = key * 40 + code;
    }
    return false;
}

template <typename View>
bool BasicHtmlTokens<View>::startsWith(At at, std::string_view word) const
{
    return m_end - at >= qsizetype(word.size()) && equalFolded(at, word.size(), word);
}

template class BasicHtmlTokens<QStringView>;
template class BasicHtmlTokens<std::string_view>;
