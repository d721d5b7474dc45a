#include "tools/migration/LegacyWords.h"

#include "tools/migration/LegacyRows.h"

#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

QList<KeyWord> keyWordsOf(const LegacyBookSet &set, const LegacyPlaces &places,
                          const LegacyOutlines &outlines, MigrationNotes &notes)
{
    QList<KeyWord> keyWords;
    QHash<QString, qsizetype> byText;
    QSet<QString> known; // word and page
    qsizetype lost = 0;
    for (const LegacyWord &word : set.words) {
        const auto page = outlines.keyOf(places.find(word.book, word.file));
        if (word.word.trimmed().isEmpty() || !page) {
            ++lost;
            notes.add(
                LegacyTable::searchWords, nameOf(word),
                page ? u"It has no word; it was left out."_s
                     : u"The word \"%1\" leads to \"%2\", which is no page; it was left out."_s.arg(
                         word.word, word.file));
            continue;
        }
        if (!byText.contains(word.word)) {
            byText.insert(word.word, keyWords.size());
            keyWords.append({word.word, u"Index"_s, {}, {}});
        }
        const QString key = QStringList{word.word, page->book, page->page}.join(u'\n');
        if (!known.contains(key))
            keyWords[byText.value(word.word)].pages.append(*page);
        known.insert(key);
    }
    notes.count(LegacyTable::searchWords, set.words.size(), lost);
    return keyWords;
}
