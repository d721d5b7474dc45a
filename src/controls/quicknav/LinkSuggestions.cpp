#include "controls/quicknav/LinkSuggestions.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostHeadings = 40; // of one page
constexpr qsizetype shortestStem = 4;
constexpr double titleWeight = 3;

QString tr(const char *text)
{
    return QCoreApplication::translate("LinkSuggestions", text);
}

/// Whether words are written together in the script of a character.
bool isJoined(QChar c)
{
    if (c.unicode() < 0x1100) // where the first of them begins
        return false;
    switch (c.script()) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
        return true;
    default:
        return c == u'\u30FC'; // the sign that lengthens a sound is of no script
    }
}

/// Whether normalising leaves a character as it is. It takes long, and most texts do not need it.
bool isNormal(QChar c)
{
    const char16_t code = c.unicode();
    return code < 0x80 || (code >= 0x4e00 && code < 0xa000) || (code > 0x3040 && code < 0x3097)
           || (code > 0x30a0 && code < 0x30ff);
}

QChar withoutAccent(QChar c)
{
    const QString parts = isJoined(c) ? QString() : c.decomposition();
    return parts.isEmpty() ? c : parts.front();
}

QString folded(const QString &text)
{
    if (std::all_of(text.cbegin(), text.cend(), isNormal))
        return text.toCaseFolded();
    QString now = text.normalized(QString::NormalizationForm_KC).toCaseFolded();
    std::transform(now.cbegin(), now.cend(), now.begin(), withoutAccent);
    return now;
}

bool saysNothing(QStringView word)
{
    static constexpr std::array fillers{"the"_L1, "and"_L1, "for"_L1, "with"_L1, "from"_L1,
                                        "how"_L1, "der"_L1, "die"_L1, "das"_L1,  "und"_L1,
                                        "mit"_L1, "von"_L1, "wie"_L1, "ein"_L1,  "eine"_L1};
    return word.size() < 2
           || (word.size() <= 4
               && std::any_of(fillers.begin(), fillers.end(),
                              [&](QLatin1StringView filler) { return word == filler; }));
}

enum class Run { Other, Word, Joined };

Run runOf(QChar c)
{
    if (isJoined(c))
        return Run::Joined;
    return c.isLetterOrNumber() ? Run::Word : Run::Other;
}

/// Calls `visit` with what is compared of a folded text: its words, and pairs of characters where
/// words are written together.
template <typename Visit>
void eachTerm(QStringView text, const Visit &visit)
{
    for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
        const Run kind = runOf(text.at(begin));
        while (end < text.size() && runOf(text.at(end)) == kind)
            ++end;
        const QStringView run = text.sliced(begin, end - begin);
        if (kind == Run::Joined && run.size() > 1) {
            for (qsizetype i = 0; i + 1 < run.size(); ++i)
                visit(run.sliced(i, 2));
        } else if (kind == Run::Joined || (kind == Run::Word && !saysNothing(run))) {
            visit(run);
        }
    }
}

bool resemble(QStringView a, QStringView b)
{
    const qsizetype shorter = std::min(a.size(), b.size());
    const qsizetype longer = std::max(a.size(), b.size());
    return shorter >= shortestStem && longer - shorter <= 4 && a.startsWith(b.first(shorter));
}

using Places = QList<qsizetype>; // of wanted terms, each once

void note(Places &places, qsizetype place)
{
    if (!places.contains(place))
        places.append(place);
}

/// Which of the wanted terms a text holds.
class Matcher final
{
public:
    explicit Matcher(const QStringList &wanted)
        : m_wanted(wanted)
    {
        for (qsizetype i = 0; i < wanted.size(); ++i)
            m_byFirst[wanted.at(i).front()].append(i);
    }
    [[nodiscard]] Places in(const QString &text) const
    {
        Places found;
        eachTerm(text, [&](QStringView term) {
            if (const qsizetype match = matchOf(term); match >= 0)
                note(found, match);
        });
        return found;
    }

private:
    [[nodiscard]] qsizetype matchOf(QStringView term) const
    {
        const auto near = m_byFirst.constFind(term.front());
        if (near == m_byFirst.constEnd())
            return -1;
        qsizetype match = -1;
        for (const qsizetype i : *near) {
            if (m_wanted.at(i) == term)
                return i;
            if (match < 0 && resemble(m_wanted.at(i), term))
                match = i;
        }
        return match;
    }

    const QStringList &m_wanted;
    QHash<QChar, Places> m_byFirst; ///< by first character
};

struct Found
{
    Places inTitle, inHeadings;
};

QString quoted(Places terms, const QStringList &wanted)
{
    std::sort(terms.begin(), terms.end());
    QStringList words;
    for (const qsizetype term : std::as_const(terms))
        words.append(u'\'' + wanted.at(term) + u'\'');
    return words.join(u", "_s);
}

QString reasonOf(const Found &found, const QStringList &wanted)
{
    QStringList reasons;
    if (!found.inTitle.isEmpty())
        reasons.append(tr("title contains %1").arg(quoted(found.inTitle, wanted)));
    Places rest = found.inHeadings;
    rest.removeIf([&](qsizetype term) { return found.inTitle.contains(term); });
    if (!rest.isEmpty())
        reasons.append(tr("a heading contains %1").arg(quoted(rest, wanted)));
    return reasons.join(u"; "_s);
}

/// The terms of the names, those of the most particular name first, with their weights.
struct Wanted
{
    QStringList terms;
    QList<double> weights;
};

Wanted wantedOf(const QStringList &names)
{
    Wanted wanted;
    for (qsizetype i = names.size() - 1; i >= 0; --i) {
        eachTerm(folded(names.at(i)), [&](QStringView term) {
            if (wanted.terms.contains(term))
                return;
            wanted.terms.append(term.toString());
            wanted.weights.append(static_cast<double>(i + 1));
        });
    }
    return wanted;
}

/// How much each wanted term tells of a page that has it.
QList<double> worthOf(const Wanted &wanted, const QList<Found> &found)
{
    QList<int> uses(wanted.terms.size(), 0);
    for (const Found &page : found) {
        Places has = page.inTitle;
        for (const qsizetype term : page.inHeadings)
            note(has, term);
        for (const qsizetype term : std::as_const(has))
            ++uses[term];
    }
    QList<double> worth;
    for (qsizetype term = 0; term < uses.size(); ++term) {
        const double rarity = static_cast<double>(found.size()) / std::max(uses.at(term), 1);
        worth.append(wanted.weights.at(term) * (1 + std::log(rarity)));
    }
    return worth;
}

} // namespace

LinkSuggestions::LinkSuggestions(const QList<SuggestionPage> &pages)
{
    m_pages.reserve(pages.size());
    for (const SuggestionPage &page : pages) {
        const QStringList headings = page.headings.mid(0, mostHeadings);
        m_pages.append({folded(page.title), folded(headings.join(u'\n'))});
    }
}

QList<Suggestion> LinkSuggestions::resembling(const QStringList &names, qsizetype most) const
{
    const Wanted wanted = wantedOf(names);
    const Matcher matcher(wanted.terms);
    QList<Found> found;
    found.reserve(m_pages.size());
    for (const Folded &page : m_pages)
        found.append({matcher.in(page.title), matcher.in(page.headings)});

    const QList<double> worth = worthOf(wanted, found);
    QList<Suggestion> suggestions;
    for (qsizetype i = 0; i < found.size(); ++i) {
        double score = 0;
        for (const qsizetype term : found.at(i).inTitle)
            score += titleWeight * worth.at(term);
        for (const qsizetype term : found.at(i).inHeadings)
            score += worth.at(term);
        if (score > 0)
            suggestions.append({i, score, {}});
    }
    std::stable_sort(suggestions.begin(), suggestions.end(),
                     [](const Suggestion &a, const Suggestion &b) { return a.score > b.score; });
    suggestions.resize(std::min(suggestions.size(), most));
    for (Suggestion &suggestion : suggestions)
        suggestion.reason = reasonOf(found.at(suggestion.page), wanted.terms);
    return suggestions;
}
