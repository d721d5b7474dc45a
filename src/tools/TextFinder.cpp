#include "tools/TextFinder.h"

#include <QDeadlineTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 2'000;                                // milliseconds for one text
constexpr auto before = "(*ANYCRLF)(*LIMIT_MATCH=1000000)"_L1; // steps for one match

QRegularExpression patternOf(const FindOptions &options)
{
    if (!options.isPattern)
        return {};
    QRegularExpression::PatternOptions how =
        QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption;
    if (!options.matchCase)
        how |= QRegularExpression::CaseInsensitiveOption;
    // The author's own pattern is judged first, so that what is wrong is said about that.
    const QRegularExpression own(options.text, how);
    if (!own.isValid())
        return own;
    const QString words = options.wholeWord ? u"(?<!\\w)(?:%1)(?!\\w)"_s : u"%1"_s;
    return QRegularExpression(before + words.arg(options.text), how);
}

bool isWordCharacter(const QString &text, qsizetype at)
{
    return at >= 0 && at < text.size() && (text[at].isLetterOrNumber() || text[at] == u'_');
}

bool isWholeWord(const QString &text, qsizetype start, qsizetype length)
{
    const bool joinsBefore = isWordCharacter(text, start) && isWordCharacter(text, start - 1);
    const qsizetype end = start + length;
    return !joinsBefore && !(isWordCharacter(text, end - 1) && isWordCharacter(text, end));
}

QString expanded(const QString &replacement, const QRegularExpressionMatch &match,
                 QLatin1StringView lineEnd)
{
    QString text;
    for (qsizetype at = 0; at < replacement.size(); ++at) {
        const QChar next = at + 1 < replacement.size() ? replacement[at + 1] : QChar();
        if (replacement[at] != u'\\' || next.isNull()) {
            text += replacement[at];
            continue;
        }
        ++at;
        if (next >= u'0' && next <= u'9')
            text += match.captured(next.unicode() - u'0');
        else
            text += next == u'n' ? QString(lineEnd) : QString(next == u't' ? u'\t' : next);
    }
    return text;
}

} // namespace

TextFinder::TextFinder(FindOptions options)
    : m_options(std::move(options))
    , m_needle(m_options.matchCase ? AsciiNeedle() : AsciiNeedle(m_options.text, false))
    , m_matcher(m_options.text, m_options.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive)
    , m_pattern(patternOf(m_options))
{
}

QString TextFinder::problem() const
{
    if (m_pattern.isValid())
        return {};
    return u"%1 (character %2)"_s.arg(m_pattern.errorString())
        .arg(m_pattern.patternErrorOffset() + 1);
}

TextFinder::Found TextFinder::in(const QString &text, qsizetype most) const
{
    if (isIdle())
        return {};
    return m_options.isPattern ? patternHits(text, most) : plainHits(text, most);
}

qsizetype TextFinder::nextPlain(const QString &text, qsizetype from) const
{
    return m_needle.isValid() ? m_needle.indexIn(QStringView(text), from)
                              : m_matcher.indexIn(text, from);
}

TextFinder::Found TextFinder::plainHits(const QString &text, qsizetype most) const
{
    Found found;
    const qsizetype length = m_options.text.size();
    qsizetype at = nextPlain(text, 0);
    for (; at >= 0 && found.hits.size() < most;) {
        const bool counts = !m_options.wholeWord || isWholeWord(text, at, length);
        if (counts)
            found.hits.append({at, length});
        at = nextPlain(text, at + (counts ? length : 1));
    }
    found.complete = at < 0;
    return found;
}

TextFinder::Found TextFinder::patternHits(const QString &text, qsizetype most) const
{
    Found found;
    const QDeadlineTimer deadline(patience);
    qsizetype at = 0;
    while (at <= text.size()) {
        if (found.hits.size() == most || deadline.hasExpired())
            return {found.hits, false};
        const auto match = m_pattern.match(text, at, QRegularExpression::NormalMatch,
                                           QRegularExpression::DontCheckSubjectStringMatchOption);
        if (!match.isValid())
            return {found.hits, false};
        if (!match.hasMatch())
            return found;
        if (match.capturedLength() > 0)
            found.hits.append({match.capturedStart(), match.capturedLength()});
        at = match.capturedLength() > 0 ? match.capturedEnd() : match.capturedStart() + 1;
    }
    return found;
}

QString TextFinder::replacementOf(const QString &text, const TextHit &hit,
                                  const QString &replacement) const
{
    if (!m_options.isPattern)
        return replacement;
    const auto match = m_pattern.match(text, hit.start, QRegularExpression::NormalMatch,
                                       QRegularExpression::DontCheckSubjectStringMatchOption
                                           | QRegularExpression::AnchorAtOffsetMatchOption);
    const bool crlf = replacement.contains("\\n"_L1) && text.contains("\r\n"_L1);
    return expanded(replacement, match, crlf ? "\r\n"_L1 : "\n"_L1);
}

QString TextFinder::replaced(const QString &text, const QList<TextHit> &hits,
                             const QString &replacement,
                             const std::function<bool(qsizetype)> &isWanted) const
{
    QString result;
    result.reserve(text.size() + hits.size() * replacement.size());
    qsizetype from = 0;
    for (qsizetype number = 0; number < hits.size(); ++number) {
        if (isWanted && !isWanted(number))
            continue;
        const TextHit &hit = hits[number];
        result += QStringView(text).sliced(from, hit.start - from);
        result += replacementOf(text, hit, replacement);
        from = hit.start + hit.length;
    }
    result += QStringView(text).sliced(from);
    return result;
}
