#include "startup/PageText.h"

#include "platform/CharacterSet.h"
#include "platform/QvError.h"
#include "startup/CharsetNames.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype declarationRoom = 4096; // bytes at the start in which a page declares itself

struct Mark
{
    QByteArrayView bytes;
    const char *encoding;
};

constexpr Mark marks[] = {
    {"\xEF\xBB\xBF", "UTF-8"},
    {"\xFF\xFE", "UTF-16LE"},
    {"\xFE\xFF", "UTF-16BE"},
};

// What the head of a page says of itself, in XML or HTML; comments are passed over.
QString declaredCharset(const QByteArray &head)
{
    static const QRegularExpression declaration(
        u"<!--.*?-->(*SKIP)(*FAIL)|(?:<\\?xml\\b[^>]*?\\bencoding|<meta\\b[^>]*?\\bcharset)"
        "\\s*=\\s*[\"']?\\s*([\\w.:-]+)"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    // Latin-1 is always valid; to check it again costs more than the match.
    return declaration
        .match(QString::fromLatin1(head), 0, QRegularExpression::NormalMatch,
               QRegularExpression::DontCheckSubjectStringMatchOption)
        .captured(1);
}

const char *codePageOf(const QString &language)
{
    if (language == "CHS"_L1)
        return "windows-936";
    if (language == "CHT"_L1)
        return "windows-950";
    if (language == "JPN"_L1)
        return "windows-932";
    if (language == "KOR"_L1)
        return "windows-949";
    return "windows-1252";
}

bool isUnicode(const QByteArray &encoding)
{
    return encoding.startsWith("UTF-");
}

// Legacy sets put a control character of this range where a byte means nothing to them.
bool holdsUnassigned(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.unicode() >= 0x80 && c.unicode() < 0xA0; });
}

bool isDamaged(const QByteArray &encoding, QByteArrayView bytes, const QString &text)
{
    if (encoding.startsWith("UTF-16"))
        return bytes.size() % 2 != 0 || !text.isValidUtf16();
    return !isUnicode(encoding) && holdsUnassigned(text);
}

/// Nothing when this machine knows no such encoding.
std::optional<PageText> decodeAs(const QByteArray &encoding, QByteArrayView bytes,
                                 bool mark = false)
{
    const CharacterSet set(encoding);
    if (!set.isKnown())
        return {};
    CharacterSet::Decoded decoded = set.decode(bytes);
    PageText page{std::move(decoded.text), {encoding, mark}};
    page.damaged = decoded.hasError || isDamaged(encoding, bytes, page.text);
    return page;
}

std::optional<PageText> decodeMarked(const QByteArray &bytes)
{
    for (const Mark &mark : marks) {
        if (bytes.startsWith(mark.bytes))
            return decodeAs(mark.encoding, QByteArrayView(bytes).sliced(mark.bytes.size()), true);
    }
    return {};
}

// Most pages are good UTF-8, and that is read much faster without the question what is bad.
PageText decodeUtf8(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    if (text.contains(QChar::ReplacementCharacter))
        return *decodeAs("UTF-8", bytes);
    return {text, {"UTF-8"}};
}

bool isSevenBit(const QByteArray &encoding)
{
    return encoding.toUpper().startsWith("ISO-2022-");
}

// A declaration that does not read as it stands (UCS-2 in a page of bytes) is no help, and what
// declares Unicode has been tried before.
QByteArray usableEncoding(const QByteArray &head, const QString &declared)
{
    const QByteArray encoding = encodingFor(declared);
    if (encoding.isEmpty() || isUnicode(encoding.toUpper()))
        return {};
    const auto page = decodeAs(encoding, head);
    return page && page->text.contains(declared) ? encoding : QByteArray();
}

// A page that calls itself UTF-8, is not valid and yet holds a sequence of it: a damaged one.
bool isBrokenUtf8(const PageText &utf8, const QString &declared)
{
    return encodingFor(declared).toUpper() == "UTF-8"
           && std::any_of(utf8.text.begin(), utf8.text.end(), [](QChar c) {
                  return c.unicode() >= 0x80 && c != QChar::ReplacementCharacter;
              });
}

// ISO-2022 is ASCII with escape sequences. Any other set is kept for what will be typed later.
PageText decodeAscii(const QByteArray &bytes, PageText page, const QByteArray &declared)
{
    if (isSevenBit(declared))
        return *decodeAs(declared, bytes);
    if (!declared.isEmpty())
        page.encoding.name = declared;
    return page;
}

[[noreturn]] void raiseNoConverter(const QByteArray &encoding)
{
    throw QvError(ComponentMissing, {},
                  u"This machine has no converter for text in %1. Install the character set tables "
                  "(ICU) of Qt, or save the page as UTF-8"_s.arg(QString::fromLatin1(encoding)));
}

PageText decodeByLanguage(const QByteArray &bytes, const QString &language)
{
    const QByteArray codePage = codePageOf(language);
    const auto page = decodeAs(codePage, bytes);
    if (!page)
        raiseNoConverter(codePage);
    return *page;
}

[[noreturn]] void raiseLacking(const QString &text, qsizetype at, const PageEncoding &encoding)
{
    const char32_t character = QStringView(text).sliced(at).toUcs4().constFirst();
    const auto line = QStringView(text).first(at).count(u'\n') + 1;
    throw QvError(
        InvalidCall, {},
        u"Line %1: the character \"%2\" (U+%3) does not exist in %4, the page's encoding. Take "
        "it out, or write it as &#%5;"_s.arg(
            QString::number(line), QString::fromUcs4(&character, 1),
            QString::number(uint(character), 16).toUpper().rightJustified(4, u'0'),
            QString::fromLatin1(encoding.name), QString::number(uint(character))));
}

/// The character at `at`; nothing of it when it is half of a surrogate pair.
QStringView characterAt(const QString &text, qsizetype at)
{
    const QStringView rest = QStringView(text).sliced(at);
    if (!rest[0].isSurrogate())
        return rest.first(1);
    const bool pair = rest[0].isHighSurrogate() && rest.size() > 1 && rest[1].isLowSurrogate();
    return rest.first(pair ? 2 : 0);
}

bool canWrite(QStringView character, const QByteArray &encoding)
{
    const CharacterSet::Encoded encoded = CharacterSet(encoding).encode(character);
    return !encoded.bytes.isEmpty() && !encoded.hasError;
}

qsizetype firstLacking(const QString &text, const QByteArray &encoding)
{
    qsizetype at = 0;
    while (at + 1 < text.size() && canWrite(characterAt(text, at), encoding))
        at += characterAt(text, at).size();
    return at;
}

QByteArray markOf(const PageEncoding &encoding)
{
    for (const Mark &mark : marks) {
        if (encoding.mark && encoding.name == mark.encoding)
            return mark.bytes.toByteArray();
    }
    return {};
}

} // namespace

PageText decodePage(const QByteArray &bytes, const QString &language)
{
    if (const auto marked = decodeMarked(bytes))
        return *marked;

    const PageText utf8 = decodeUtf8(bytes);
    const bool ascii = !utf8.damaged && utf8.text.size() == bytes.size();
    if (!utf8.damaged && !ascii)
        return utf8;

    const QByteArray head = bytes.left(declarationRoom);
    const QString declared = declaredCharset(head);
    const QByteArray encoding = usableEncoding(head, declared);
    if (ascii)
        return decodeAscii(bytes, utf8, encoding);
    if (isBrokenUtf8(utf8, declared))
        return utf8;
    if (!encoding.isEmpty() && !isSevenBit(encoding))
        return *decodeAs(encoding, bytes);
    return decodeByLanguage(bytes, language);
}

QByteArray encodePage(const QString &text, const PageEncoding &encoding)
{
    const CharacterSet set(encoding.name);
    if (!set.isKnown())
        raiseNoConverter(encoding.name);
    auto [bytes, hasError] = set.encode(isSevenBit(encoding.name) ? text + u'\n' : text);
    if (hasError || !text.isValidUtf16())
        raiseLacking(text, firstLacking(text, encoding.name), encoding);
    if (isSevenBit(encoding.name))
        bytes.chop(1); // the line end brought the text back to ASCII
    return markOf(encoding) + bytes;
}
