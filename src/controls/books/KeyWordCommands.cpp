#include "controls/books/KeyWordCommands.h"

#include "controls/books/PageCommands.h"
#include "platform/QvError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr auto author = "Author"_L1;

bool isSame(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

/// The keywords as staged; written back when `edit` says that it changed something.
void editKeyWords(ProjectSession &session, StagedFiles &files,
                  const std::function<bool(QList<KeyWord> &)> &edit)
{
    Session &values = session.program().session;
    QList<KeyWord> keyWords = readKeyWords(values, files, session.projectName());
    if (edit(keyWords))
        writeKeyWords(values, files, session.projectName(), keyWords);
}

KeyWord *authors(QList<KeyWord> &keyWords, const QString &text)
{
    const auto found = std::find_if(keyWords.begin(), keyWords.end(), [&](const KeyWord &keyWord) {
        return keyWord.origin == author && isSame(keyWord.text, text);
    });
    return found == keyWords.end() ? nullptr : &*found;
}

KeyWord &madeFor(QList<KeyWord> &keyWords, const QString &text, const KeyWord::Page &page)
{
    KeyWord *keyWord = authors(keyWords, text);
    if (keyWord == nullptr) {
        keyWords.append({.text = text, .origin = author, .synonyms = {}, .pages = {}});
        keyWord = &keyWords.last();
    }
    if (!keyWord->pages.contains(page))
        keyWord->pages.append(page);
    return *keyWord;
}

/// Takes out the pages that `isGone` says, and the author's keywords that lose their last one.
bool dropPages(QList<KeyWord> &keyWords,
               const std::function<bool(const KeyWord &, const KeyWord::Page &)> &isGone)
{
    bool changed = false;
    for (auto keyWord = keyWords.begin(); keyWord != keyWords.end();) {
        const auto gone = keyWord->pages.removeIf(
            [&](const KeyWord::Page &page) { return isGone(*keyWord, page); });
        changed |= gone > 0;
        const bool isEmpty = gone > 0 && keyWord->pages.isEmpty() && keyWord->origin == author;
        keyWord = isEmpty ? keyWords.erase(keyWord) : keyWord + 1;
    }
    return changed;
}

BookPage *pageOf(Book &book, const QString &id)
{
    BookPage *const page = OutlineEdit::find(book.pages, id);
    if (page == nullptr)
        throw QvError(InvalidCall, {},
                      u"The book \"%1\" has no page %2 any more."_s.arg(book.name, id));
    return page;
}
} // namespace

KeyWordCommands::KeyWordCommands(ProjectSession &session)
    : m_session(session)
{
}

bool KeyWordCommands::add(const TocBook &entry, const QString &page, const QString &keyWord)
{
    return m_session.perform(tr("Add keyword %1").arg(keyWord), [&](StagedFiles &files) {
        editBook(m_session, files, entry, [&](Book &book) {
            QStringList &listed = pageOf(book, page)->keyWords;
            if (listed.contains(keyWord, Qt::CaseInsensitive))
                return false;
            editKeyWords(m_session, files, [&](QList<KeyWord> &all) {
                listed.append(madeFor(all, keyWord, {entry.acronym, page}).text);
                return true;
            });
            return true;
        });
    });
}

bool KeyWordCommands::remove(const TocBook &entry, const QString &page, const QString &keyWord)
{
    return m_session.perform(tr("Remove keyword %1").arg(keyWord), [&](StagedFiles &files) {
        editBook(m_session, files, entry, [&](Book &book) {
            return pageOf(book, page)->keyWords.removeIf([&](const QString &text) {
                return isSame(text, keyWord);
            }) > 0;
        });
        const KeyWord::Page gone{entry.acronym, page};
        editKeyWords(m_session, files, [&](QList<KeyWord> &all) {
            return dropPages(all, [&](const KeyWord &other, const KeyWord::Page &place) {
                return other.origin == author && isSame(other.text, keyWord) && place == gone;
            });
        });
    });
}

bool KeyWordCommands::setSynonyms(const TocBook &entry, const QString &page, const QString &keyWord,
                                  const QStringList &synonyms)
{
    return m_session.perform(tr("Change synonyms of %1").arg(keyWord), [&](StagedFiles &files) {
        editKeyWords(m_session, files, [&](QList<KeyWord> &all) {
            madeFor(all, keyWord, {entry.acronym, page}).synonyms = synonyms;
            return true;
        });
    });
}

QStringList KeyWordCommands::synonyms(const QString &keyWord) const
{
    QList<KeyWord> all = readKeyWords(m_session.program().session, m_session.program().files,
                                      m_session.projectName());
    const KeyWord *const found = authors(all, keyWord);
    return found == nullptr ? QStringList() : found->synonyms;
}

// Links by acronym mean the first book that has it; where there is a twin, they may mean that one.
void KeyWordCommands::forgetPages(ProjectSession &session, StagedFiles &files, const TocBook &entry,
                                  const std::optional<QStringList> &ids)
{
    const QList<TocBook> &books = session.books();
    const bool hasTwin =
        std::count_if(books.cbegin(), books.cend(),
                      [&](const TocBook &book) { return isSame(book.acronym, entry.acronym); })
        > 1;
    if (hasTwin)
        return;
    editKeyWords(session, files, [&](QList<KeyWord> &all) {
        return dropPages(all, [&](const KeyWord &, const KeyWord::Page &place) {
            return place.book == entry.acronym && (!ids || ids->contains(place.page));
        });
    });
}

void KeyWordCommands::redirect(ProjectSession &session, StagedFiles &files, const QString &fromBook,
                               const QString &toBook)
{
    editKeyWords(session, files, [&](QList<KeyWord> &all) {
        bool changed = false;
        for (KeyWord &keyWord : all) {
            for (KeyWord::Page &page : keyWord.pages) {
                if (page.book == fromBook) {
                    page.book = toBook;
                    changed = true;
                }
            }
        }
        return changed;
    });
}
