#include "controls/books/BookRules.h"

#include "platform/Paths.h"
#include "projectfiles/ProductFolders.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {
constexpr std::array reservedNames{"DynamicHelp"_L1, "Global Information"_L1};

bool isSame(const QString &a, QAnyStringView b)
{
    return a.compare(b.toString(), Qt::CaseInsensitive) == 0;
}

template <typename List>
bool holds(const List &list, const QString &text)
{
    return std::any_of(std::begin(list), std::end(list),
                       [&](auto entry) { return isSame(text, entry); });
}

const TocBook *bookWith(const QList<TocBook> &books, QString TocBook::*member, const QString &value)
{
    const auto found = std::find_if(books.cbegin(), books.cend(), [&](const TocBook &book) {
        return isSame(book.*member, value);
    });
    return found == books.cend() ? nullptr : &*found;
}

QString commonProblem(const QString &what, const QString &value, qsizetype longest)
{
    if (value.trimmed().isEmpty())
        return u"Enter the book's %1."_s.arg(what);
    if (value.size() > longest)
        return u"The %1 is too long: at most %2 characters."_s.arg(what).arg(longest);
    if (const QString character = BookRules::forbiddenIn(value); !character.isEmpty())
        return u"The %1 holds a character that is not allowed (%2)."_s.arg(what, character);
    return {};
}
} // namespace

// What XML cannot hold, what moves the writing direction about, and halves of characters.
QString BookRules::forbiddenIn(const QString &text)
{
    for (const char32_t c : text.toUcs4()) {
        const QChar::Category category = QChar::category(c);
        if (category == QChar::Other_Control || category == QChar::Other_Format
            || category == QChar::Other_Surrogate || QChar::isNonCharacter(c))
            return u"U+%1"_s.arg(static_cast<uint>(c), 4, 16, '0'_L1).toUpper();
    }
    return {};
}

QString BookRules::nameProblem(const QString &name, const QList<TocBook> &others)
{
    if (const QString problem = commonProblem(u"name"_s, name, 200); !problem.isEmpty())
        return problem;
    if (holds(reservedNames, name.trimmed()))
        return u"\"%1\" is a name that the product uses itself."_s.arg(name.trimmed());
    if (const TocBook *taken = bookWith(others, &TocBook::name, name.trimmed()))
        return u"There is a book named \"%1\" already."_s.arg(taken->name);
    return {};
}

QString BookRules::acronymProblem(const QString &acronym, const QList<TocBook> &others)
{
    if (const QString problem = commonProblem(u"acronym"_s, acronym, 40); !problem.isEmpty())
        return problem;
    const QString trimmed = acronym.trimmed();
    for (const QChar c : trimmed) {
        if (u"<>\"'/\\:*?|#@"_s.contains(c))
            return u"The acronym becomes part of a file name and cannot hold %1"_s.arg(c);
    }
    if (!isSafeName(fileFor(trimmed)))
        return u"A file cannot be named \"%1\"."_s.arg(fileFor(trimmed));
    if (isSame(trimmed, u"GLOBAL"_s))
        return u"\"%1\" is an acronym that the product uses itself."_s.arg(trimmed);
    if (const TocBook *taken = bookWith(others, &TocBook::acronym, trimmed))
        return u"The book \"%1\" has this acronym already."_s.arg(taken->name);
    return {};
}

QString BookRules::folderProblem(const QString &folder, const QList<TocBook> &others)
{
    if (const QString problem = commonProblem(u"folder"_s, folder, 100); !problem.isEmpty())
        return problem;
    if (folder.contains('#'_L1) || folder.contains('%'_L1) || !isSafeName(folder))
        return u"A book folder cannot be named \"%1\"."_s.arg(folder);
    if (holds(productFolders, folder))
        return u"The product keeps files of its own in \"%1\"."_s.arg(folder);
    if (const TocBook *taken = bookWith(others, &TocBook::folder, folder))
        return u"The book \"%1\" uses this folder already."_s.arg(taken->name);
    return {};
}

QString BookRules::typeProblem(const QString &type)
{
    return type.isEmpty() ? QString() : commonProblem(u"type"_s, type, 100);
}

QString BookRules::folderAdvice(const QString &folder)
{
    if (folder.contains("Book_"_L1))
        return {};
    return u"Without \"Book_\" in the folder's name its pages become locked in copies of the "
           "project."_s;
}

QString BookRules::folderFor(const QString &acronym)
{
    return u"Book_"_s + acronym.trimmed();
}

QString BookRules::fileFor(const QString &acronym)
{
    return folderFor(acronym) + u".xml"_s;
}
