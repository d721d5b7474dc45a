#include "viewer/SearchMarks.h"

#include "tools/words/LetterTable.h"
#include "tools/words/StopWords.h"
#include "tools/words/WordForms.h"

#include <QHash>

#include <algorithm>
#include <vector>

namespace {

struct Word
{
    TextPiece piece;
    bool isPaired = false; ///< of a script without blanks
};

LetterKind kindOf(QChar letter)
{
    const LetterKind kind = LetterTable::instance().kind(letter.unicode());
    return kind == LetterKind::Composing ? LetterKind::Paired : kind;
}

std::vector<Word> wordsOf(const QString &text)
{
    std::vector<Word> words;
    LetterKind last = LetterKind::Gap;
    for (int i = 0; i < text.size(); ++i) {
        const LetterKind kind = kindOf(text[i]);
        const bool goesOn = kind == last || kind == LetterKind::Ignored;
        if (last != LetterKind::Gap && goesOn) {
            ++words.back().piece.length;
            continue;
        }
        if (kind == LetterKind::Part || kind == LetterKind::Paired)
            words.push_back({{i, 1}, kind == LetterKind::Paired});
        last = kind == LetterKind::Ignored ? LetterKind::Gap : kind;
    }
    return words;
}

std::string folded(QStringView word)
{
    QString letters;
    for (const QChar letter : word) {
        if (kindOf(letter) != LetterKind::Ignored)
            letters +=
                QChar(static_cast<char16_t>(LetterTable::instance().folded(letter.unicode())));
    }
    return letters.toStdString();
}

/// A word that is asked for, in the forms that pages are compared with.
struct WantedWord
{
    std::vector<std::string> forms, stems;
    bool mayGoOn = false;
};

/// What one text asks for.
struct Wanted
{
    std::vector<WantedWord> words = {};
    QStringList runs = {};
};

Wanted wantedOf(const QString &asked, bool mayGoOn, const WordForms &forms,
                const StopWords &stopWords)
{
    Wanted wanted;
    std::vector<WantedWord> common; // search leaves them out, unless there are only such
    for (const Word &word : wordsOf(asked)) {
        const QString text = asked.mid(word.piece.start, word.piece.length);
        if (word.isPaired) {
            wanted.runs.append(text);
            continue;
        }
        const std::string letters = folded(text);
        const bool isLast = word.piece.start + word.piece.length == asked.size();
        auto &words = stopWords.contains(letters) ? common : wanted.words;
        words.push_back({WordForms::of(letters), forms.stemsOf(letters), mayGoOn && isLast});
    }
    if (wanted.words.empty() && wanted.runs.isEmpty())
        wanted.words = std::move(common);
    return wanted;
}

/// The words of a page, by what makes them the same to a reader who searches.
class WordsOfPage final
{
public:
    WordsOfPage(const QString &text, const WordForms &forms)
    {
        for (const Word &word : wordsOf(text)) {
            if (word.isPaired)
                continue;
            const QString shown = text.mid(word.piece.start, word.piece.length);
            const auto known = m_numbers.constFind(shown);
            const size_t number = known != m_numbers.constEnd() ? *known : m_words.size();
            if (number == m_words.size()) {
                const std::string letters = folded(shown);
                m_numbers.insert(shown, number);
                m_words.push_back({WordForms::of(letters), forms.stemsOf(letters), {}});
            }
            m_words[number].places.append(word.piece);
        }
    }

    [[nodiscard]] QList<TextPiece> placesOf(const WantedWord &wanted) const
    {
        QList<TextPiece> whole, begun;
        for (const Known &word : m_words) {
            if (haveOneInCommon(word.stems, wanted.stems))
                whole += word.places;
            else if (wanted.mayGoOn && isBegun(word, wanted))
                begun += word.places;
        }
        return whole.isEmpty() ? begun : whole;
    }

private:
    struct Known
    {
        std::vector<std::string> forms, stems;
        QList<TextPiece> places;
    };
    static bool isBegun(const Known &word, const WantedWord &wanted)
    {
        return std::any_of(word.forms.begin(), word.forms.end(),
                           [&](const std::string &form) { return isBegunBy(form, wanted.forms); });
    }

    std::vector<Known> m_words; ///< each once
    QHash<QString, size_t> m_numbers;
};

/// What is marked of a run of characters: itself; where the text lacks it, its pairs, by which
/// search finds pages.
QStringList marksOf(const QString &run, const QString &text)
{
    if (run.size() <= 2 || text.contains(run))
        return {run};
    QStringList pairs;
    for (qsizetype i = 0; i + 2 <= run.size(); ++i)
        pairs.append(run.mid(i, 2));
    return pairs;
}

void markAll(const QString &wanted, const QString &text, qsizetype most, QList<TextPiece> &marks)
{
    for (qsizetype at = text.indexOf(wanted); at >= 0 && marks.size() < most;
         at = text.indexOf(wanted, at + wanted.size()))
        marks.append({static_cast<int>(at), static_cast<int>(wanted.size())});
}

/// What the page says of one text; nothing when it lacks a word and must hold all.
QList<TextPiece> marksOf(const Wanted &wanted, bool needsAll, const WordsOfPage &page,
                         const QString &text, qsizetype most)
{
    QList<TextPiece> marks;
    bool isWhole = true;
    for (const WantedWord &word : wanted.words) {
        const QList<TextPiece> places = page.placesOf(word);
        isWhole = isWhole && !places.isEmpty();
        marks += places.first(qMin(most, places.size()));
    }
    for (const QString &run : wanted.runs) {
        const qsizetype before = marks.size();
        for (const QString &mark : marksOf(run, text))
            markAll(mark, text, before + most, marks);
        isWhole = isWhole && marks.size() > before;
    }
    return needsAll && !isWhole ? QList<TextPiece>() : marks;
}

} // namespace

QList<TextPiece> searchMarks(const QString &text, const QStringList &asked, const QString &language,
                             qsizetype most)
{
    const WordForms forms(language);
    const StopWords stopWords(language);
    const WordsOfPage page(text, forms);
    QList<TextPiece> marks;
    for (qsizetype i = 0; i < asked.size(); ++i)
        marks += marksOf(wantedOf(asked[i], i == 0, forms, stopWords), i > 0, page, text, most);
    std::ranges::stable_sort(marks, {}, &TextPiece::start);
    const auto doubles = std::ranges::unique(marks, {}, &TextPiece::start);
    marks.erase(doubles.begin(), doubles.end());
    return marks;
}
