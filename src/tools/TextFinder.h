#pragma once

#include "tools/AsciiNeedle.h"

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringMatcher>

#include <functional>

/// What to look for in the source of pages.
struct FindOptions
{
    QString text;
    bool matchCase = false;
    bool wholeWord = false;
    bool isPattern = false; ///< a regular expression
    friend bool operator==(const FindOptions &, const FindOptions &) = default;
};

/// A place in a text where it was found, in characters.
struct TextHit
{
    qsizetype start = 0, length = 0;
    friend bool operator==(const TextHit &, const TextHit &) = default;
};

/// Finds a text or a regular expression in texts, one after the other; the hits never overlap.
/// Lines end in "\n" or "\r\n", and "^" and "$" mean their ends. A pattern that would take for ever
/// on a text is given up. May be used by one thread at a time; a copy for each is cheap.
class TextFinder final
{
public:
    explicit TextFinder(FindOptions options = {});

    [[nodiscard]] const FindOptions &options() const { return m_options; }
    /// What is wrong with the pattern; "" for nothing.
    [[nodiscard]] QString problem() const;
    /// There is nothing to look for, or the pattern is bad.
    [[nodiscard]] bool isIdle() const { return m_options.text.isEmpty() || !m_pattern.isValid(); }

    struct Found
    {
        QList<TextHit> hits;  ///< in text order; empty matches of a pattern are left out
        bool complete = true; ///< false: the pattern was given up, or there are more than `most`
    };
    [[nodiscard]] Found in(const QString &text, qsizetype most = 1'000'000) const;

    /// What takes the place of a hit. In that of a pattern \1 to \9 stand for its groups, \0 for
    /// the hit, \n and \t for the text's line end and a tab, and \\ for "\"; a text is put in as it
    /// stands.
    [[nodiscard]] QString replacementOf(const QString &text, const TextHit &hit,
                                        const QString &replacement) const;
    /// `text` with the hits replaced that `isWanted` (their number among `hits`) lets through.
    [[nodiscard]] QString replaced(const QString &text, const QList<TextHit> &hits,
                                   const QString &replacement,
                                   const std::function<bool(qsizetype)> &isWanted = {}) const;

private:
    [[nodiscard]] qsizetype nextPlain(const QString &text, qsizetype from) const;
    [[nodiscard]] Found plainHits(const QString &text, qsizetype most) const;
    [[nodiscard]] Found patternHits(const QString &text, qsizetype most) const;

    FindOptions m_options;
    AsciiNeedle m_needle; ///< valid where it is faster than the matcher
    QStringMatcher m_matcher;
    QRegularExpression m_pattern;
};
