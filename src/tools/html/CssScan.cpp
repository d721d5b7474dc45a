#include "tools/html/CssScan.h"

#include "tools/html/HtmlTokens.h"
#include "tools/html/PageUnits.h"

#include <algorithm>

namespace {

/// Goes through a style sheet and notes what it refers to.
template <typename View>
class CssScan final
{
public:
    CssScan(View css, qsizetype offset)
        : m_css(css)
        , m_size(static_cast<qsizetype>(css.size()))
        , m_offset(offset)
    {
    }

    QList<PageReference> references()
    {
        while (m_at < m_size)
            step();
        return m_found;
    }

private:
    void step()
    {
        const char32_t c = at(m_at);
        if (c == '/' && startsWith("/*")) {
            passComment();
        } else if (isQuote(c)) {
            readString();
        } else if (c == '\\') {
            m_at += 2;
        } else if (c == '@' && startsWith("@import")) {
            m_at += 7;
            m_kind = PageReference::Kind::Style;
            skipBlanks();
            if (m_at < m_size && isQuote(at(m_at)))
                note(readString());
        } else if ((c == 'u' || c == 'U') && startsWith("url(")) {
            readUrl();
        } else {
            if (c == ';' || c == '{')
                m_kind = PageReference::Kind::Resource;
            ++m_at;
        }
    }

    struct Range
    {
        qsizetype start, end;
    };

    void passComment()
    {
        for (m_at += 2; m_at < m_size; ++m_at) {
            if (at(m_at) == '*' && startsWith("*/")) {
                m_at += 2;
                return;
            }
        }
    }

    /// What stands between the quotes; an unescaped line end ends it too.
    Range readString()
    {
        const char32_t quote = at(m_at);
        const qsizetype start = ++m_at;
        while (m_at < m_size && at(m_at) != quote && at(m_at) != '\n')
            m_at += at(m_at) == '\\' ? 2 : 1;
        m_at = std::min(m_at, m_size);
        const qsizetype end = m_at;
        m_at = std::min(m_at + 1, m_size);
        return {start, end};
    }

    void readUrl()
    {
        m_at += 4;
        skipBlanks();
        if (m_at >= m_size)
            return;
        if (isQuote(at(m_at))) {
            note(readString());
            return;
        }
        const qsizetype start = m_at;
        while (m_at < m_size && at(m_at) != ')' && !isBlank(at(m_at)))
            ++m_at;
        note({start, m_at});
    }

    void note(Range range)
    {
        if (range.end > range.start)
            m_found.append({m_kind, m_offset + range.start, range.end - range.start});
        m_kind = PageReference::Kind::Resource;
    }

    void skipBlanks()
    {
        while (m_at < m_size && isBlank(at(m_at)))
            ++m_at;
    }

    [[nodiscard]] static bool isQuote(char32_t c) { return c == '"' || c == '\''; }
    [[nodiscard]] char32_t at(qsizetype place) const { return unit(m_css.data()[place]); }

    [[nodiscard]] bool startsWith(std::string_view word) const
    {
        const auto length = static_cast<qsizetype>(word.size());
        using Size = decltype(m_css.size());
        return m_size - m_at >= length
               && sameName(View(m_css.data() + m_at, static_cast<Size>(length)), word);
    }

    View m_css;
    qsizetype m_size;
    qsizetype m_offset;
    qsizetype m_at = 0;
    PageReference::Kind m_kind = PageReference::Kind::Resource;
    QList<PageReference> m_found;
};

} // namespace

QList<PageReference> scanCss(QStringView css, qsizetype offset)
{
    return CssScan(css, offset).references();
}

QList<PageReference> scanCss(std::string_view css, qsizetype offset)
{
    return CssScan(css, offset).references();
}
