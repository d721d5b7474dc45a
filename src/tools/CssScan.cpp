#include "tools/HtmlScan.h"

using namespace Qt::StringLiterals;

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r' || c == u'\f';
}

/// Goes through a style sheet and notes what it refers to.
class CssScan final
{
public:
    CssScan(QStringView css, qsizetype offset)
        : m_css(css)
        , m_offset(offset)
    {
    }

    QList<PageReference> references()
    {
        while (m_at < m_css.size())
            step();
        return m_found;
    }

private:
    void step()
    {
        const QChar c = m_css[m_at];
        if (startsWith("/*"_L1)) {
            const qsizetype end = m_css.indexOf("*/"_L1, m_at + 2);
            m_at = end < 0 ? m_css.size() : end + 2;
        } else if (c == u'"' || c == u'\'') {
            readString();
        } else if (c == u'\\') {
            m_at += 2;
        } else if (c == u'@' && startsWith("@import"_L1)) {
            m_at += 7;
            m_kind = PageReference::Kind::Style;
            skipBlanks();
            if (m_at < m_css.size() && (m_css[m_at] == u'"' || m_css[m_at] == u'\''))
                note(readString());
        } else if ((c == u'u' || c == u'U') && startsWith("url("_L1)) {
            readUrl();
        } else {
            if (c == u';' || c == u'{')
                m_kind = PageReference::Kind::Resource;
            ++m_at;
        }
    }

    struct Range
    {
        qsizetype start, end;
    };

    /// What stands between the quotes; an unescaped line end ends it too.
    Range readString()
    {
        const QChar quote = m_css[m_at];
        const qsizetype start = ++m_at;
        while (m_at < m_css.size() && m_css[m_at] != quote && m_css[m_at] != u'\n')
            m_at += m_css[m_at] == u'\\' ? 2 : 1;
        m_at = std::min(m_at, m_css.size());
        const qsizetype end = m_at;
        m_at = std::min(m_at + 1, m_css.size());
        return {start, end};
    }

    void readUrl()
    {
        m_at += 4;
        skipBlanks();
        if (m_at >= m_css.size())
            return;
        if (m_css[m_at] == u'"' || m_css[m_at] == u'\'') {
            note(readString());
            return;
        }
        const qsizetype start = m_at;
        while (m_at < m_css.size() && m_css[m_at] != u')' && !isBlank(m_css[m_at]))
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
        while (m_at < m_css.size() && isBlank(m_css[m_at]))
            ++m_at;
    }

    [[nodiscard]] bool startsWith(QLatin1StringView word) const
    {
        return m_css.sliced(m_at).startsWith(word, Qt::CaseInsensitive);
    }

    QStringView m_css;
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
