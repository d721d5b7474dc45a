#include "viewer/SearchMarks.h"

#include "tools/words/LetterTable.h"
#include "tools/words/StopWords.h"
#include "tools/words/WordForms.h"

#include <QHash>

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

/// What is asked for, in the forms that pages are compared with.
class Wanted final
{
public:
    Wanted(const QString &question, const QString &language)
        : m_forms(language)
    {
        const StopWords stopWords(language);
        for (const Word &word : wordsOf(question)) {
            const QString text = question.mid(word.piece.start, word.piece.length);
            const std::string letters = folded(text);
            if (word.isPaired)
                m_runs.append(text);
            else if (!stopWords.contains(letters)) // which search leaves out
                m_words.push_back(m_forms.stemsOf(letters));
        }
    }

    bool holds(const QString &word)
    {
        const auto known = m_known.constFind(word);
        if (known != m_known.constEnd())
            return *known;
        const std::vector<std::string> stems = m_forms.stemsOf(folded(word));
        bool found = false;
        for (const auto &wanted : m_words)
            found = found || haveOneInCommon(stems, wanted);
        m_known.insert(word, found);
        return found;
    }

    [[nodiscard]] const QStringList &runs() const { return m_runs; }

private:
    WordForms m_forms;
    std::vector<std::vector<std::string>> m_words; ///< stems of each
    QStringList m_runs;
    QHash<QString, bool> m_known;
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

} // namespace

QList<TextPiece> searchMarks(const QString &text, const QString &question, const QString &language,
                             qsizetype most)
{
    Wanted wanted(question, language);
    QList<TextPiece> marks;
    for (const Word &word : wordsOf(text)) {
        if (marks.size() < most && !word.isPaired
            && wanted.holds(text.mid(word.piece.start, word.piece.length)))
            marks.append(word.piece);
    }
    for (const QString &run : wanted.runs()) {
        for (const QString &mark : marksOf(run, text))
            markAll(mark, text, most, marks);
    }
    return marks;
}
