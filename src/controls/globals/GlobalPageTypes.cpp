#include "controls/globals/GlobalPageTypes.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Type
{
    const char *name;
    const char *word;                       ///< for the author
    std::array<const char16_t *, 6> titles; ///< in the order of `languages`
};

constexpr std::array<const char *, 6> languages{"ENU", "DEU", "CHS", "CHT", "JPN", "KOR"};

const std::array<Type, 6> types{{
    {"Welcome",
     QT_TRANSLATE_NOOP("GlobalPageTypes", "Welcome"),
     {u"Welcome", u"Willkommen", u"欢迎", u"歡迎", u"ようこそ", u"환영합니다"}},
    {"Legal",
     QT_TRANSLATE_NOOP("GlobalPageTypes", "Legal"),
     {u"Legal notices", u"Rechtliche Hinweise", u"法律声明", u"法律聲明", u"法的事項",
      u"법적 고지"}},
    {"Glossary",
     QT_TRANSLATE_NOOP("GlobalPageTypes", "Glossary"),
     {u"Glossary", u"Glossar", u"术语表", u"詞彙表", u"用語集", u"용어집"}},
    {"HowTo",
     QT_TRANSLATE_NOOP("GlobalPageTypes", "How to"),
     {u"How to use this help", u"So verwenden Sie diese Hilfe", u"如何使用本帮助",
      u"如何使用本說明", u"このヘルプの使い方", u"이 도움말 사용 방법"}},
    {"Contact",
     QT_TRANSLATE_NOOP("GlobalPageTypes", "Contact"),
     {u"Contact", u"Kontakt", u"联系方式", u"聯絡方式", u"お問い合わせ", u"연락처"}},
    {"Free", QT_TRANSLATE_NOOP("GlobalPageTypes", "Free"), {u"", u"", u"", u"", u"", u""}},
}};

const Type *typeOf(const QString &name)
{
    const auto found = std::find_if(types.begin(), types.end(), [&](const Type &type) {
        return name == QLatin1StringView(type.name);
    });
    return found == types.end() ? nullptr : &*found;
}

std::size_t languageIndex(const QString &language)
{
    const auto found = std::find_if(languages.begin(), languages.end(), [&](const char *code) {
        return language == QLatin1StringView(code);
    });
    return found == languages.end() ? 0 : static_cast<std::size_t>(found - languages.begin());
}

} // namespace

QStringList GlobalPageTypes::all()
{
    QStringList names;
    for (const Type &type : types)
        names.append(QString::fromLatin1(type.name));
    return names;
}

QString GlobalPageTypes::wordFor(const QString &type)
{
    const Type *known = typeOf(type);
    return known == nullptr ? type : QCoreApplication::translate("GlobalPageTypes", known->word);
}

QString GlobalPageTypes::problemOf(const QString &type, const QList<GlobalPage> &pages,
                                   const QString &id)
{
    if (type == free)
        return {};
    for (const GlobalPage &page : pages) {
        if (page.type == type && (id.isEmpty() || page.id != id))
            return QCoreApplication::translate(
                       "GlobalPageTypes", "There is a page of this type already: %1. A project has "
                                          "one of each type, and any number of free pages.")
                .arg(page.title);
    }
    return {};
}

QString GlobalPageTypes::titleFor(const QString &type, const QString &language)
{
    const Type *known = typeOf(type);
    return known == nullptr ? QString()
                            : QString::fromUtf16(known->titles.at(languageIndex(language)));
}
