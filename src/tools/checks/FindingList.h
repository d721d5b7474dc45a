#pragma once

#include "tools/checks/FindingKinds.h"

#include <QStringList>

#include <vector>

/// Gathers the findings of a run, file by file. Kinds that are switched off, or are not looked for
/// at the level ordered, are left out; of one kind in one file the first hundred stand for
/// themselves, and one more tells how many others there are.
class FindingList final
{
public:
    FindingList(const QStringList &switchedOff, CheckLevel level);

    /// Whether this kind is looked for at all.
    [[nodiscard]] bool wants(QLatin1StringView code) const;
    /// What follows is found in this file, relative to the project folder, with backslashes; "" is
    /// the project as a whole.
    void startFile(const QString &file);
    /// Counts one; it shall be added when this says yes.
    [[nodiscard]] bool takes(QLatin1StringView code);
    /// Texts that are much too long are cut, and what no file of ours can hold is replaced.
    void add(QLatin1StringView code, int line, const QString &text, const QString &subject = {});
    /// Adds what another tool found in this file, if it is wanted.
    void addFound(const Finding &finding);
    /// All of them; nothing may be added any more.
    [[nodiscard]] QList<Finding> take();

private:
    struct Kind
    {
        const FindingKind *facts;
        QString code; ///< one text for all findings
        bool isWanted;
        int count = 0; ///< in the file at hand
    };
    [[nodiscard]] size_t placeOf(QLatin1StringView code) const;
    void endFile();

    std::vector<Kind> m_kinds;
    QString m_file;
    QList<Finding> m_findings;
};
