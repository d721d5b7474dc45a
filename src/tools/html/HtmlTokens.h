#pragma once

#include "tools/html/HtmlElements.h"

#include <QStringView>

#include <string_view>
#include <type_traits>
#include <vector>

/// Case of ASCII letters does not count; nothing else is folded.
bool sameName(QStringView a, std::string_view b);
bool sameName(std::string_view a, std::string_view b);

/// `View` is QStringView for the editors' texts, std::string_view for the bytes of a page.
template <typename View>
struct BasicHtmlAttribute
{
    View name;
    View value; ///< as written: character references are still there
    HtmlKey key = 0;
};

/// A piece of a page. The views point into the text that was scanned.
template <typename View>
struct BasicHtmlToken
{
    enum class Kind { Text, StartTag, EndTag, End } kind = Kind::End;
    HtmlTag tag = HtmlTag::Other;
    bool selfClosing = false; ///< ends in "/>", which HTML itself does not look at
    qsizetype start = 0;      ///< of its first character in the page
    View text;                ///< of Text; of a tag its name
    std::vector<BasicHtmlAttribute<View>> attributes;

    [[nodiscard]] bool isStart(HtmlTag of) const { return kind == Kind::StartTag && tag == of; }
    [[nodiscard]] bool isEnd(HtmlTag of) const { return kind == Kind::EndTag && tag == of; }
    /// The value of the first attribute of that name; a null view when there is none.
    [[nodiscard]] View attribute(HtmlKey key) const
    {
        for (const BasicHtmlAttribute<View> &candidate : attributes) {
            if (candidate.key == key)
                return candidate.value;
        }
        return {};
    }
};

/// What the end of a page cut off.
enum class CutOff { Nothing, Tag, Comment };

/// Cuts a page into tags and text in one pass, and looks at no character more than a few times
/// however broken it is. Comments, declarations, unquoted attributes and the elements that hold raw
/// text (script, style, title, textarea and the like) are treated as HTML says.
template <typename View>
class BasicHtmlTokens final
{
public:
    using Token = BasicHtmlToken<View>;
    using Kind = typename Token::Kind;

    explicit BasicHtmlTokens(View page);

    /// The next piece; it stays valid until the next call. Ends with one of kind End, again and
    /// again.
    const Token &next();
    /// At the end: what is missing, and where it began.
    [[nodiscard]] CutOff cutOff() const { return m_cutOff; }
    [[nodiscard]] qsizetype cutOffAt() const { return m_cutOffAt; }

private:
    using Unit = std::remove_cv_t<std::remove_pointer_t<typename View::const_pointer>>;
    using Character = std::conditional_t<sizeof(Unit) == 1, char, char16_t>;
    using At = const Character *;

    bool readMarkup();
    bool readTag(Kind kind, At name);
    bool readAttributes();
    void readAttribute();
    View readValue();
    void readText(At end);
    void passComment();
    void passDeclaration();
    void enterElement();
    void noteCutOff(CutOff what, At from);
    HtmlKey readName(bool ofAttribute);
    [[nodiscard]] At rawTextEnd() const;
    [[nodiscard]] At scriptEnd() const;
    [[nodiscard]] bool isEndTag(At at, HtmlKey name) const;
    [[nodiscard]] bool startsWith(At at, std::string_view word) const;
    [[nodiscard]] View view(At from, At to) const;
    [[nodiscard]] bool atEnd() const { return m_at == m_end; }
    void passBlanks();

    At m_begin, m_at, m_end;
    HtmlTag m_rawElement = HtmlTag::Other; ///< its content comes next
    HtmlKey m_rawKey = 0;
    int m_foreign = 0; ///< open <svg> and <math>, where "/>" does end an element
    CutOff m_cutOff = CutOff::Nothing;
    qsizetype m_cutOffAt = 0;
    Token m_token;
};

extern template class BasicHtmlTokens<QStringView>;
extern template class BasicHtmlTokens<std::string_view>;

using PageToken = BasicHtmlToken<std::string_view>;
using PageTokens = BasicHtmlTokens<std::string_view>;
using HtmlToken = BasicHtmlToken<QStringView>;
using HtmlTokens = BasicHtmlTokens<QStringView>;
