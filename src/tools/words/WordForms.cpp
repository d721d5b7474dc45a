#include "tools/words/WordForms.h"

#include "tools/build/Utf8.h"
#include "tools/words/LetterTable.h"

#include <algorithm>
#include <new>

#include <libstemmer.h>

using namespace Qt::StringLiterals;

namespace {

bool isSmallLetter(char byte)
{
    return byte >= 'a' && byte <= 'z';
}

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// "-" and "_" go, unless they part digits ("2023-10-05"); "." stays.
std::string withoutConnectors(std::string_view word)
{
    std::string plain;
    for (size_t i = 0; i < word.size(); ++i) {
        const bool connects = word[i] == '-' || word[i] == '_';
        const bool partsDigits =
            i > 0 && i + 1 < word.size() && isDigit(word[i - 1]) && isDigit(word[i + 1]);
        if (!connects || partsDigits)
            plain += word[i];
    }
    return plain;
}

/// What letters become that no decomposition gives; `umlaut` is what follows a, o or u.
QString spelledOut(QChar letter, QLatin1StringView umlaut)
{
    switch (letter.unicode()) {
    case u'ä':
        return u'a' + umlaut;
    case u'ö':
        return u'o' + umlaut;
    case u'ü':
        return u'u' + umlaut;
    case u'ß':
        return u"ss"_s;
    case u'æ':
        return u"ae"_s;
    case u'œ':
        return u"oe"_s;
    case u'ø':
        return u"o"_s;
    case u'ł':
        return u"l"_s;
    case u'đ':
    case u'ð':
        return u"d"_s;
    case u'þ':
        return u"th"_s;
    default:
        return letter;
    }
}

bool losesMarks(QChar letter)
{
    return letter.script() == QChar::Script_Latin || letter.script() == QChar::Script_Greek;
}

/// Signs of Arabic that are written or left out as one likes.
bool isOptionalSign(QChar character)
{
    const char16_t code = character.unicode();
    return code == 0x0640 || (code >= 0x064B && code <= 0x0652);
}

QString withoutAccents(const QString &word)
{
    QString plain;
    QChar letter;
    for (const QChar character : word.normalized(QString::NormalizationForm_KD)) {
        const bool isMark = character.category() == QChar::Mark_NonSpacing;
        if (!isMark)
            letter = character;
        if ((isMark && losesMarks(letter)) || isOptionalSign(character))
            continue;
        plain += character;
    }
    return plain.normalized(QString::NormalizationForm_KC).toCaseFolded();
}

std::string typed(const QString &word, QLatin1StringView umlaut)
{
    QString spelled;
    for (const QChar letter : word)
        spelled += spelledOut(letter, umlaut);
    return withoutConnectors(withoutAccents(spelled).toStdString());
}

bool isOfPairedScript(std::string_view word)
{
    const char32_t first = utf8At(word.data(), word.data() + word.size()).code;
    const LetterKind kind = LetterTable::instance().kind(first);
    return kind == LetterKind::Paired || kind == LetterKind::Composing;
}

} // namespace

bool haveOneInCommon(const std::vector<std::string> &some, const std::vector<std::string> &others)
{
    return std::find_first_of(some.begin(), some.end(), others.begin(), others.end()) != some.end();
}

bool isBegunBy(std::string_view form, const std::vector<std::string> &beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [form](const std::string &one) { return form.starts_with(one); });
}

WordForms::WordForms(const QString &language)
    : m_stemmer(sb_stemmer_new(language == "DEU"_L1 ? "german" : "english", nullptr))
{
    if (!m_stemmer)
        throw std::bad_alloc();
}

void WordForms::Delete::operator()(sb_stemmer *stemmer) const
{
    sb_stemmer_delete(stemmer);
}

bool WordForms::isPlain(std::string_view word)
{
    if (word.empty() || isOfPairedScript(word))
        return true;
    return isAscii(word) && word.find_first_of("-_") == std::string_view::npos;
}

std::vector<std::string> WordForms::of(std::string_view word)
{
    if (isPlain(word))
        return {std::string(word)};
    if (isAscii(word))
        return {withoutConnectors(word)};
    const QString text = QString::fromUtf8(word.data(), static_cast<qsizetype>(word.size()))
                             .normalized(QString::NormalizationForm_C);
    std::vector<std::string> forms{typed(text, ""_L1)};
    if (std::string other = typed(text, "e"_L1); other != forms.front())
        forms.push_back(std::move(other));
    return forms;
}

std::string_view WordForms::stem(std::string_view form) const
{
    if (!std::all_of(form.begin(), form.end(), isSmallLetter))
        return form;
    const auto *const letters = reinterpret_cast<const sb_symbol *>(form.data());
    const sb_symbol *const stem =
        sb_stemmer_stem(m_stemmer.get(), letters, static_cast<int>(form.size()));
    if (!stem)
        throw std::bad_alloc();
    return {reinterpret_cast<const char *>(stem),
            static_cast<size_t>(sb_stemmer_length(m_stemmer.get()))};
}

std::vector<std::string> WordForms::stemsOf(std::string_view word) const
{
    std::vector<std::string> stems;
    for (const std::string &form : of(word)) {
        std::string stem(this->stem(form));
        if (std::find(stems.begin(), stems.end(), stem) == stems.end())
            stems.push_back(std::move(stem));
    }
    return stems;
}
