#include "tools/HtmlEntities.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

// The names of U+00A0 to U+00FF in order, each followed by a blank.
constexpr QLatin1StringView latinNames{
    "nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg macr "
    "deg plusmn sup2 sup3 acute micro para middot cedil sup1 ordm raquo frac14 frac12 "
    "frac34 iquest Agrave Aacute Acirc Atilde Auml Aring AElig Ccedil Egrave Eacute Ecirc "
    "Euml Igrave Iacute Icirc Iuml ETH Ntilde Ograve Oacute Ocirc Otilde Ouml times "
    "Oslash Ugrave Uacute Ucirc Uuml Yacute THORN szlig agrave aacute acirc atilde auml "
    "aring aelig ccedil egrave eacute ecirc euml igrave iacute icirc iuml eth ntilde "
    "ograve oacute ocirc otilde ouml divide oslash ugrave uacute ucirc uuml yacute thorn "
    "yuml "};

struct Named
{
    QLatin1StringView name;
    char16_t character;
};

constexpr Named otherNames[]{
    {"amp"_L1, 0x0026},    {"lt"_L1, 0x003C},     {"gt"_L1, 0x003E},    {"quot"_L1, 0x0022},
    {"apos"_L1, 0x0027},   {"OElig"_L1, 0x0152},  {"oelig"_L1, 0x0153}, {"Scaron"_L1, 0x0160},
    {"scaron"_L1, 0x0161}, {"Yuml"_L1, 0x0178},   {"fnof"_L1, 0x0192},  {"circ"_L1, 0x02C6},
    {"tilde"_L1, 0x02DC},  {"ensp"_L1, 0x2002},   {"emsp"_L1, 0x2003},  {"thinsp"_L1, 0x2009},
    {"zwnj"_L1, 0x200C},   {"zwj"_L1, 0x200D},    {"lrm"_L1, 0x200E},   {"rlm"_L1, 0x200F},
    {"ndash"_L1, 0x2013},  {"mdash"_L1, 0x2014},  {"lsquo"_L1, 0x2018}, {"rsquo"_L1, 0x2019},
    {"sbquo"_L1, 0x201A},  {"ldquo"_L1, 0x201C},  {"rdquo"_L1, 0x201D}, {"bdquo"_L1, 0x201E},
    {"dagger"_L1, 0x2020}, {"Dagger"_L1, 0x2021}, {"bull"_L1, 0x2022},  {"hellip"_L1, 0x2026},
    {"permil"_L1, 0x2030}, {"prime"_L1, 0x2032},  {"Prime"_L1, 0x2033}, {"lsaquo"_L1, 0x2039},
    {"rsaquo"_L1, 0x203A}, {"euro"_L1, 0x20AC},   {"trade"_L1, 0x2122}, {"larr"_L1, 0x2190},
    {"uarr"_L1, 0x2191},   {"rarr"_L1, 0x2192},   {"darr"_L1, 0x2193},  {"harr"_L1, 0x2194},
    {"rArr"_L1, 0x21D2},   {"minus"_L1, 0x2212},  {"infin"_L1, 0x221E}, {"asymp"_L1, 0x2248},
    {"ne"_L1, 0x2260},     {"le"_L1, 0x2264},     {"ge"_L1, 0x2265},    {"alpha"_L1, 0x03B1},
    {"beta"_L1, 0x03B2},   {"gamma"_L1, 0x03B3},  {"delta"_L1, 0x03B4}, {"Delta"_L1, 0x0394},
    {"mu"_L1, 0x03BC},     {"pi"_L1, 0x03C0},     {"sigma"_L1, 0x03C3}, {"Omega"_L1, 0x03A9},
    {"omega"_L1, 0x03C9},
};

// What pages mean by the numbers 128 to 159.
constexpr std::array<char16_t, 32> windowsCharacters{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t latinCharacter(QStringView name)
{
    char32_t character = 0xA0;
    qsizetype at = 0;
    while (at < latinNames.size()) {
        const qsizetype end = latinNames.indexOf(u' ', at);
        if (name == latinNames.sliced(at, end - at))
            return character;
        ++character;
        at = end + 1;
    }
    return 0;
}

char32_t namedCharacter(QStringView name)
{
    for (const Named &named : otherNames) {
        if (name == named.name)
            return named.character;
    }
    return latinCharacter(name);
}

char32_t numberedCharacter(QStringView digits)
{
    const bool hex = digits.startsWith(u'x') || digits.startsWith(u'X');
    bool ok = false;
    const uint number = hex ? digits.sliced(1).toUInt(&ok, 16) : digits.toUInt(&ok, 10);
    if (!ok || number == 0)
        return 0;
    if (number >= 128 && number < 160)
        return windowsCharacters[number - 128];
    return number > QChar::LastValidCodePoint || QChar::isSurrogate(number)
               ? char32_t(QChar::ReplacementCharacter)
               : char32_t(number);
}

/// The character that `reference` (between "&" and ";") stands for; 0 for none.
char32_t character(QStringView reference)
{
    return reference.startsWith(u'#') ? numberedCharacter(reference.sliced(1))
                                      : namedCharacter(reference);
}

} // namespace

QString withoutEntities(QStringView text)
{
    constexpr qsizetype longest = 12;
    QString result;
    result.reserve(text.size());
    qsizetype from = 0;
    for (qsizetype at = text.indexOf(u'&'); at >= 0; at = text.indexOf(u'&', at + 1)) {
        const qsizetype end = text.sliced(at, std::min(longest, text.size() - at)).indexOf(u';');
        const char32_t meant = end > 0 ? character(text.sliced(at + 1, end - 1)) : 0;
        if (meant == 0)
            continue;
        result += text.sliced(from, at - from);
        result += QString::fromUcs4(&meant, 1);
        from = at + end + 1;
        at = from - 1;
    }
    return result += text.sliced(from);
}

QString plainText(QStringView text)
{
    return withoutEntities(text).simplified();
}
