#include "tools/checks/FindingList.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostOfAKind = 100;
constexpr qsizetype longestText = 600;

bool isForbidden(QChar unit)
{
    return unit < u' ' || unit == QChar(0xFFFE) || unit == QChar(0xFFFF);
}

/// In one line, not longer than anybody would read, and fit for our files.
QString tidied(const QString &text)
{
    QString tidy = text;
    if (text.size() > longestText) {
        const bool isPair = text[longestText - 1].isHighSurrogate();
        tidy = text.first(longestText - (isPair ? 1 : 0)) + u'…';
    }
    for (QChar &unit : tidy) {
        if (isForbidden(unit) && !unit.isSpace())
            unit = QChar::ReplacementCharacter;
    }
    return tidy.simplified();
}

} // namespace

FindingList::FindingList(const QStringList &switchedOff, CheckLevel level)
{
    for (const FindingKind &kind : findingKinds()) {
        const QString code = kind.code;
        const bool isWanted = kind.level <= level && !switchedOff.contains(code);
        m_kinds.push_back({&kind, code, isWanted});
    }
}

size_t FindingList::placeOf(QLatin1StringView code) const
{
    const auto found = std::find_if(m_kinds.begin(), m_kinds.end(),
                                    [code](const Kind &kind) { return kind.facts->code == code; });
    Q_ASSERT(found != m_kinds.end());
    return static_cast<size_t>(found - m_kinds.begin());
}

bool FindingList::wants(QLatin1StringView code) const
{
    return m_kinds[placeOf(code)].isWanted;
}

void FindingList::startFile(const QString &file)
{
    endFile();
    m_file = file;
}

bool FindingList::takes(QLatin1StringView code)
{
    Kind &kind = m_kinds[placeOf(code)];
    return kind.isWanted && ++kind.count <= mostOfAKind;
}

void FindingList::add(QLatin1StringView code, int line, const QString &text, const QString &subject)
{
    const Kind &kind = m_kinds[placeOf(code)];
    m_findings.append(
        {kind.code, kind.facts->severity, m_file, line, tidied(text), tidied(subject)});
}

void FindingList::addFound(const Finding &finding)
{
    const FindingKind *const kind = findingKind(finding.code);
    if (kind != nullptr && takes(kind->code))
        add(kind->code, finding.line, finding.text, finding.subject);
}

void FindingList::endFile()
{
    for (Kind &kind : m_kinds) {
        if (kind.count > mostOfAKind)
            add(kind.facts->code, 0,
                QCoreApplication::translate("FindingList", "%1 more of this kind in this file.")
                    .arg(kind.count - mostOfAKind),
                u"..."_s);
        kind.count = 0;
    }
}

QList<Finding> FindingList::take()
{
    endFile();
    return std::exchange(m_findings, {});
}
