#include "components/NameRules.h"

#include "platform/Messages.h"
#include "platform/Paths.h"
#include "resources/Texts.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 99;
constexpr qsizetype longestFileName = 255; // bytes, on the disks of servers
constexpr auto favourites = "My Favorites"_L1;
constexpr auto packedEnding = "_Server.Zip"_L1;
// The longest prefix that a language puts before the name of the folder.
constexpr auto languagePrefix = "DEU_"_L1;

bool isInvisible(char32_t character)
{
    static constexpr std::array kinds{QChar::Other_Control, QChar::Other_Format,
                                      QChar::Other_Surrogate, QChar::Separator_Line,
                                      QChar::Separator_Paragraph};
    return QChar::isNonCharacter(character)
           || std::find(kinds.begin(), kinds.end(), QChar::category(character)) != kinds.end();
}

QString codeOf(char32_t character)
{
    return u"U+"_s + QString::number(character, 16).toUpper().rightJustified(4, u'0');
}

/// The first character that no name may hold, in a form that can be seen; "" when there is none.
QString forbiddenCharacter(const QString &name)
{
    for (qsizetype at = 0; at < name.size(); ++at) {
        const bool pair =
            name[at].isHighSurrogate() && at + 1 < name.size() && name[at + 1].isLowSurrogate();
        const char32_t character =
            pair ? QChar::surrogateToUcs4(name[at], name[at + 1]) : name[at].unicode();
        if (isInvisible(character))
            return codeOf(character);
        if (R"(<>"'/\:*?|#)"_L1.contains(name[at]))
            return name.sliced(at, 1);
        at += pair ? 1 : 0;
    }
    return {};
}

/// How folders are called while they are copied or deleted; what has such a name is tidied away.
QString workingEnding(const QString &name)
{
    static const QRegularExpression working(u"\\.qv(?:new|del[0-9]+|tmp[0-9]+)$"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    return working.match(name).captured();
}

QString packedName(const QString &name)
{
    return u"QV"_s + languagePrefix + name + packedEnding;
}

/// The piece of the name for which it is refused; "" when it may be used.
QString offendingPiece(const QString &name, XmlCharacters::What what)
{
    if (const QString character = forbiddenCharacter(name); !character.isEmpty())
        return character;
    if (name.contains("@@@"_L1))
        return u"@@@"_s;
    if (name.startsWith(u'.') || name.startsWith(u'~'))
        return name.first(1);
    if (name.endsWith(u'.'))
        return name.last(1);
    if (name.endsWith(packedEnding, Qt::CaseInsensitive))
        return name.last(packedEnding.size());
    if (const QString ending = workingEnding(name); !ending.isEmpty())
        return ending;
    if (name.compare(favourites, Qt::CaseInsensitive) == 0)
        return name;
    if (!isSafeName(name)) // all that is left are the names of devices
        return name.section(u'.', 0, 0);
    const bool tooLong = packedName(name).toUtf8().size() > longestFileName;
    return what == XmlCharacters::What::ProjectName && tooLong ? packedName(name) : QString();
}

} // namespace

NameRules::NameRules(Messages &messages)
    : m_messages(messages)
{
}

QString NameRules::CheckXMLCharacters(const QString &text, What what)
{
    const QString problem = problemOf(text, what);
    if (problem.isEmpty())
        return text.trimmed();
    m_messages.show({.text = problem, .title = ::text(Text::DialogTitle)});
    return {};
}

QString NameRules::problemOf(const QString &text, What what)
{
    const QString name = text.trimmed();
    if (name.isEmpty())
        return {};
    if (name.size() > longestName)
        return ::text(Text::TooLong);
    const QString piece = offendingPiece(name, what);
    if (piece.isEmpty())
        return {};
    const Text where = what == What::ProjectId ? Text::FoundInProjectId : Text::FoundInProjectName;
    return ::text(Text::InvalidCharacter) + u' ' + piece + u' ' + ::text(where);
}

QString NameRules::mstrReplaceSpecialCharecters(const QString &text) const
{
    return withoutControls(text);
}

QString NameRules::withoutControls(const QString &text)
{
    const auto isSpecial = [](QChar character) {
        return character.category() == QChar::Other_Control;
    };
    if (std::none_of(text.cbegin(), text.cend(), isSpecial))
        return text;
    QString plain = text;
    std::replace_if(plain.begin(), plain.end(), isSpecial, QChar(u' '));
    return plain;
}
