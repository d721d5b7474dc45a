#include "tools/HtmlTokens.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array rawElements{"script"_L1, "style"_L1,   "title"_L1,    "textarea"_L1, "xmp"_L1,
                                 "iframe"_L1, "noembed"_L1, "noframes"_L1, "plaintext"_L1};

constexpr char16_t lower(char16_t c)
{
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

bool isLetter(QChar c)
{
    const char16_t folded = lower(c.unicode());
    return folded >= u'a' && folded <= u'z';
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r' || c == u'\f';
}

bool endsName(QChar c)
{
    return isBlank(c) || c == u'/' || c == u'>';
}

qsizetype foundOrEnd(QStringView text, qsizetype found)
{
    return found < 0 ? text.size() : found;
}

bool holdsRawText(QStringView name)
{
    return std::any_of(rawElements.begin(), rawElements.end(),
                       [&](QLatin1StringView raw) { return sameName(name, raw); });
}

} // namespace

bool sameName(QStringView a, QLatin1StringView b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](QChar x, char y) {
               return lower(x.unicode()) == lower(static_cast<unsigned char>(y));
           });
}

QStringView HtmlToken::attribute(QLatin1StringView name) const
{
    for (const HtmlAttribute &candidate : attributes) {
        if (sameName(candidate.name, name))
            return candidate.value;
    }
    return {};
}

HtmlTokens::HtmlTokens(QStringView text)
    : m_text(text)
{
}

const HtmlToken &HtmlTokens::next()
{
    if (!m_rawElement.isNull()) {
        const qsizetype end = rawTextEnd();
        m_rawElement = {};
        if (end > m_at) {
            readText(end);
            return m_token;
        }
    }
    while (!atEnd()) {
        if (m_text[m_at] != u'<') {
            readText(foundOrEnd(m_text, m_text.indexOf(u'<', m_at)));
            return m_token;
        }
        if (readMarkup())
            return m_token;
    }
    m_token.kind = HtmlToken::Kind::End;
    m_token.text = {};
    m_token.attributes.clear();
    return m_token;
}

/// At a "<": reads a tag, or a "<" that is only text; false when it was a comment or the like.
bool HtmlTokens::readMarkup()
{
    const QStringView rest = m_text.sliced(m_at + 1);
    if (!rest.isEmpty() && isLetter(rest[0]))
        return readTag(HtmlToken::Kind::StartTag, m_at + 1);
    if (rest.size() > 1 && rest[0] == u'/' && isLetter(rest[1]))
        return readTag(HtmlToken::Kind::EndTag, m_at + 2);
    if (rest.startsWith("!--"_L1)) {
        m_at = afterComment();
        return false;
    }
    if (rest.size() > 1 && (rest[0] == u'!' || rest[0] == u'?' || rest[0] == u'/')) {
        m_at = std::min(m_text.size(), foundOrEnd(m_text, m_text.indexOf(u'>', m_at)) + 1);
        return false;
    }
    readText(foundOrEnd(m_text, m_text.indexOf(u'<', m_at + 1)));
    return true;
}

void HtmlTokens::readText(qsizetype end)
{
    m_token.kind = HtmlToken::Kind::Text;
    m_token.text = m_text.sliced(m_at, end - m_at);
    m_token.attributes.clear();
    m_at = end;
}

/// A tag that the end of the page cuts off is dropped.
bool HtmlTokens::readTag(HtmlToken::Kind kind, qsizetype nameAt)
{
    m_at = nameAt;
    while (!atEnd() && !endsName(m_text[m_at]))
        ++m_at;
    m_token.kind = kind;
    m_token.text = m_text.sliced(nameAt, m_at - nameAt);
    if (!readAttributes())
        return false;
    if (kind == HtmlToken::Kind::StartTag && holdsRawText(m_token.text))
        m_rawElement = m_token.text;
    return true;
}

bool HtmlTokens::readAttributes()
{
    m_token.attributes.clear();
    while (true) {
        while (!atEnd() && (isBlank(m_text[m_at]) || m_text[m_at] == u'/'))
            ++m_at;
        if (atEnd())
            return false;
        if (m_text[m_at] == u'>') {
            ++m_at;
            return true;
        }
        if (!readAttribute())
            return false;
    }
}

bool HtmlTokens::readAttribute()
{
    const qsizetype nameAt = m_at++; // a "=" in front belongs to the name
    while (!atEnd() && !endsName(m_text[m_at]) && m_text[m_at] != u'=')
        ++m_at;
    HtmlAttribute attribute{m_text.sliced(nameAt, m_at - nameAt), {}};
    skipBlanks();
    if (!atEnd() && m_text[m_at] == u'=') {
        ++m_at;
        skipBlanks();
        attribute.value = readValue();
    }
    m_token.attributes.append(attribute);
    return !atEnd();
}

QStringView HtmlTokens::readValue()
{
    if (atEnd())
        return {};
    const QChar quote = m_text[m_at];
    if (quote == u'"' || quote == u'\'') {
        const qsizetype from = m_at + 1;
        const qsizetype end = foundOrEnd(m_text, m_text.indexOf(quote, from));
        m_at = std::min(m_text.size(), end + 1);
        return m_text.sliced(from, end - from);
    }
    const qsizetype from = m_at;
    while (!atEnd() && !isBlank(m_text[m_at]) && m_text[m_at] != u'>')
        ++m_at;
    return m_text.sliced(from, m_at - from);
}

void HtmlTokens::skipBlanks()
{
    while (!atEnd() && isBlank(m_text[m_at]))
        ++m_at;
}

/// "<!-->" and "<!--->" are whole comments; "--!>" ends one too.
qsizetype HtmlTokens::afterComment() const
{
    const qsizetype body = m_at + 4;
    const QStringView rest = m_text.sliced(body);
    if (rest.startsWith(u'>'))
        return body + 1;
    if (rest.startsWith("->"_L1))
        return body + 2;
    for (qsizetype at = m_text.indexOf("--"_L1, body); at >= 0;
         at = m_text.indexOf("--"_L1, at + 1)) {
        const QStringView end = m_text.sliced(at + 2);
        if (end.startsWith(u'>'))
            return at + 3;
        if (end.startsWith("!>"_L1))
            return at + 4;
    }
    return m_text.size();
}

qsizetype HtmlTokens::rawTextEnd() const
{
    if (sameName(m_rawElement, "plaintext"_L1))
        return m_text.size();
    if (sameName(m_rawElement, "script"_L1))
        return scriptEnd();
    qsizetype at = m_text.indexOf("</"_L1, m_at);
    while (at >= 0 && !endTagAt(at, m_rawElement))
        at = m_text.indexOf("</"_L1, at + 2);
    return foundOrEnd(m_text, at);
}

/// Between "<!--" and "-->" a script may hold "<script>...</script>" without ending.
qsizetype HtmlTokens::scriptEnd() const
{
    bool inComment = false;
    bool inInner = false;
    for (qsizetype at = m_at; at < m_text.size(); ++at) {
        const QChar c = m_text[at];
        if (c == u'-' && inComment && m_text.sliced(at).startsWith("-->"_L1)) {
            inComment = inInner = false;
        } else if (c == u'<') {
            const QStringView rest = m_text.sliced(at + 1);
            if (rest.startsWith("!--"_L1)) {
                inComment = true;
                at += 1; // "<!-->" ends at once
            } else if (endTagAt(at, m_rawElement)) {
                if (!inInner)
                    return at;
                inInner = false;
            } else if (inComment && rest.size() > 6 && sameName(rest.first(6), "script"_L1)
                       && endsName(rest[6])) {
                inInner = true;
            }
        }
    }
    return m_text.size();
}

bool HtmlTokens::endTagAt(qsizetype at, QStringView name) const
{
    const QStringView rest = m_text.sliced(at);
    return rest.size() > name.size() + 2 && rest[1] == u'/'
           && rest.sliced(2, name.size()).compare(name, Qt::CaseInsensitive) == 0
           && endsName(rest[name.size() + 2]);
}
