#include "tools/build/PageBytes.h"

#include <QUtf8StringView>

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr char escape = 0x1B; // begins the other characters of the 7-bit sets

bool isUtf8(std::string_view text)
{
    return QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8();
}

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<size_t>(bytes.size())};
}

} // namespace

PageBytes::PageBytes(const QByteArray &bytes, const QString &language)
    : m_text(viewOf(bytes))
{
    if (m_text.starts_with(utf8Mark)) {
        m_encoding.mark = true;
        m_text.remove_prefix(utf8Mark.size());
    }
    if (isUtf8(m_text) && (m_encoding.mark || m_text.find(escape) == std::string_view::npos))
        return;
    const PageText page = decodePage(bytes, language);
    m_encoding = page.encoding;
    m_damaged = page.damaged;
    m_decoded = page.text.toUtf8();
    m_text = viewOf(m_decoded);
}
