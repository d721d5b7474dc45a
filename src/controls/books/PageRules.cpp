#include "controls/books/PageRules.h"

#include "controls/books/BookRules.h"
#include "controls/session/ProjectSession.h"
#include "platform/QvError.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {
constexpr quint64 highestNumber = std::numeric_limits<quint32>::max();

QString textProblem(const QString &what, const QString &text, qsizetype longest)
{
    if (text.trimmed().isEmpty())
        return u"Enter a %1."_s.arg(what);
    if (text.size() > longest)
        return u"The %1 is too long: at most %2 characters."_s.arg(what).arg(longest);
    if (const QString character = BookRules::forbiddenIn(text); !character.isEmpty())
        return u"The %1 holds a character that is not allowed (%2)."_s.arg(what, character);
    return {};
}
} // namespace

QString PageRules::titleProblem(const QString &title)
{
    return textProblem(u"title"_s, title, 500);
}

QString PageRules::keyWordProblem(const QString &keyWord, const QStringList &others)
{
    if (others.contains(keyWord.trimmed(), Qt::CaseInsensitive))
        return u"\"%1\" is in the list already."_s.arg(keyWord.trimmed());
    return textProblem(u"word"_s, keyWord, 200);
}

PageRules::OtherPages PageRules::otherPages(ProjectSession &session, const TocBook &book,
                                            const QString &page)
{
    OtherPages others;
    for (const TocBook &entry : QList(session.books())) {
        QList<BookPage> pages;
        trap([](const QvError &) {}, [&] { pages = flattened(session.book(entry).pages); });
        const bool isSameBook = identityOf(entry) == identityOf(book);
        for (const BookPage &other : std::as_const(pages)) {
            if (isSameBook && other.id == page)
                continue;
            others.contextIds.append(other.contextIds);
            others.linkIds.append(other.linkIds);
        }
    }
    return others;
}

QString PageRules::contextNameProblem(const QString &name, const QList<ContextId> &others)
{
    static const QRegularExpression identifier(u"^[A-Za-z_][A-Za-z0-9_]*$"_s);
    if (const QString problem = textProblem(u"name"_s, name, 200); !problem.isEmpty())
        return problem;
    if (!identifier.match(name).hasMatch())
        return u"Programs can only hold letters, digits and \"_\", and no digit first."_s;
    const bool isTaken = std::any_of(others.cbegin(), others.cend(), [&](const ContextId &id) {
        return id.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return isTaken ? u"The name \"%1\" is taken in this project."_s.arg(name) : QString();
}

QString PageRules::contextNumberProblem(const QString &number, const QList<ContextId> &others)
{
    bool isNumber = false;
    const quint64 value = number.toULongLong(&isNumber);
    if (!isNumber || value > highestNumber || number.startsWith(u'+'))
        return u"Enter a number from 0 to %1."_s.arg(highestNumber);
    const bool isTaken = std::any_of(others.cbegin(), others.cend(), [&](const ContextId &id) {
        bool isOther = false;
        return id.number.toULongLong(&isOther) == value && isOther;
    });
    return isTaken ? u"The number %1 is taken in this project."_s.arg(value) : QString();
}

QString PageRules::nextContextNumber(const QList<ContextId> &others)
{
    QSet<quint64> taken;
    quint64 next = 1;
    for (const ContextId &id : others) {
        const quint64 number = id.number.toULongLong();
        taken.insert(number);
        next = std::max(next, number + 1);
    }
    if (next > highestNumber) {
        for (next = 1; taken.contains(next);)
            ++next;
    }
    return QString::number(next);
}

QString PageRules::linkIdProblem(const QString &linkId, const QStringList &others)
{
    if (others.contains(linkId.trimmed()))
        return u"The identifier \"%1\" is taken in this project."_s.arg(linkId.trimmed());
    return textProblem(u"link identifier"_s, linkId, 200);
}
