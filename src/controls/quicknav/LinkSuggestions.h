#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A page as far as its words go.
struct SuggestionPage
{
    QString title;
    QStringList headings;
};

/// A page whose title or headings resemble some names, and why.
struct Suggestion
{
    qsizetype page = 0; ///< place in the list that was asked about
    double score = 0;
    QString reason; ///< "title contains 'pump'"
};

/// Finds pages by what they are called. Words are compared without regard to case and accents and
/// by their beginnings ("pumps" resembles "pump"); Chinese, Japanese and Korean text by pairs of
/// characters. The texts are made comparable once, so that asking is quick.
class LinkSuggestions final
{
public:
    explicit LinkSuggestions(const QList<SuggestionPage> &pages);

    /// The pages that resemble the names best, at most `most`, the best first. `names` lead from
    /// the general to the particular (view, group, topic, category): the last ones weigh most. What
    /// many pages have weighs little.
    [[nodiscard]] QList<Suggestion> resembling(const QStringList &names, qsizetype most) const;

private:
    struct Folded
    {
        QString title;
        QString headings; ///< one a line
    };
    QList<Folded> m_pages;
};
