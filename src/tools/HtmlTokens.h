#pragma once

#include <QStringView>
#include <QVarLengthArray>

/// Case of ASCII letters does not count; nothing else is folded.
bool sameName(QStringView a, QLatin1StringView b);

struct HtmlAttribute
{
    QStringView name;
    QStringView value; ///< as written: entities are still there
};

/// A piece of a page. The views point into the text that was scanned.
struct HtmlToken
{
    enum class Kind { Text, StartTag, EndTag, End } kind = Kind::End;
    QStringView text; ///< of Text; of a tag its name
    QVarLengthArray<HtmlAttribute, 16> attributes;

    [[nodiscard]] bool isTag(QLatin1StringView name) const { return sameName(text, name); }
    /// The first attribute of that name; a null view when there is none.
    [[nodiscard]] QStringView attribute(QLatin1StringView name) const;
};

/// Cuts a page into tags and text in one pass. Comments, declarations, unquoted attributes and the
/// elements that hold raw text (script, style, title, textarea and the like) are treated as HTML
/// says. Works on any text, however broken.
class HtmlTokens final
{
public:
    explicit HtmlTokens(QStringView text);

    /// The next piece; it stays valid until the next call. Ends with one of kind End, again and
    /// again.
    const HtmlToken &next();

private:
    bool readMarkup();
    bool readTag(HtmlToken::Kind kind, qsizetype nameAt);
    bool readAttributes();
    bool readAttribute();
    QStringView readValue();
    void readText(qsizetype end);
    qsizetype afterComment() const;
    qsizetype rawTextEnd() const;
    qsizetype scriptEnd() const;
    bool endTagAt(qsizetype at, QStringView name) const;
    [[nodiscard]] bool atEnd() const { return m_at >= m_text.size(); }
    void skipBlanks();

    QStringView m_text;
    qsizetype m_at = 0;
    QStringView m_rawElement; ///< its content comes next
    HtmlToken m_token;
};
