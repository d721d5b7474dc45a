#pragma once

#include <QByteArray>
#include <QString>

/// How a page's bytes are to be read and written back.
struct PageEncoding
{
    QByteArray name;   ///< "UTF-8", "UTF-16LE", "windows-1252", "windows-949", ...
    bool mark = false; ///< byte-order mark at the start
    friend bool operator==(const PageEncoding &, const PageEncoding &) = default;
};

struct PageText
{
    QString text;
    PageEncoding encoding;
    bool damaged = false; ///< some bytes are no text in that encoding
};

/// Decodes a page: a byte-order mark decides; then a declared 7-bit charset (ISO-2022-*); else
/// valid UTF-8 is UTF-8; else the charset the page declares; else the Windows code page of
/// `language` (ENU, DEU 1252; CHS 936; CHT 950; JPN 932; KOR 949). A declaration that cannot be
/// true is passed over, and a page of plain ASCII keeps the charset it declares for writing.
PageText decodePage(const QByteArray &bytes, const QString &language);

/// The bytes of a page in the encoding it had. Raises 5 naming the first character that the
/// encoding lacks.
QByteArray encodePage(const QString &text, const PageEncoding &encoding);
