#pragma once

#include "startup/PageText.h"

#include <QByteArray>

#include <string_view>

/// A page's bytes as UTF-8, by the rule of `decodePage`. Most pages are UTF-8 already and are
/// looked at where they lie, so `bytes` must stay.
class PageBytes final
{
public:
    PageBytes(const QByteArray &bytes, const QString &language);

    [[nodiscard]] std::string_view text() const { return m_text; }
    [[nodiscard]] const PageEncoding &encoding() const { return m_encoding; }
    [[nodiscard]] bool isDamaged() const { return m_damaged; }

private:
    std::string_view m_text;
    PageEncoding m_encoding{"UTF-8", false};
    bool m_damaged = false;
    QByteArray m_decoded;
};
