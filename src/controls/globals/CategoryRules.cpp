#include "controls/globals/CategoryRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longest = 100;

bool isInvisible(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return QChar::isNonCharacter(character);
    }
}

} // namespace

QString CategoryRules::problemOf(const QString &name, const QStringList &others)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return u"Enter the name of the category."_s;
    if (trimmed.size() > longest)
        return u"The name is too long: at most %1 characters."_s.arg(longest);
    if (trimmed.contains(u','))
        return u"A category name holds no comma."_s;
    const QList<uint> characters = trimmed.toUcs4();
    if (std::any_of(characters.cbegin(), characters.cend(), isInvisible))
        return u"The name holds a character that cannot be seen."_s;
    for (const QString &other : others) {
        if (other.trimmed().compare(trimmed, Qt::CaseInsensitive) == 0)
            return u"There is a category named \"%1\" already."_s.arg(other);
    }
    return {};
}
