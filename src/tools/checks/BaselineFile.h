#pragma once

#include "tools/build/Finding.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

class FileSystem;

/// A finding that the author accepted: it counts as known wherever in the file it stands.
struct AcceptedFinding
{
    QString code, file, subject; ///< as of `Finding`
    friend bool operator==(const AcceptedFinding &, const AcceptedFinding &) = default;
};

/// What the author decided about the quality checks of a project.
struct Baseline
{
    QStringList switchedOff; ///< codes of kinds that are not looked for
    QList<AcceptedFinding> accepted;
};

/// By which a finding of one run is known again in another.
QString identityOf(const Finding &finding);
QString identityOf(const AcceptedFinding &accepted);
QSet<QString> identitiesOf(const Baseline &baseline);

QString baselinePath(const QString &projectFolder);

/// The project's "QV_QABaseline.xml", which belongs to the author.
class BaselineFile final
{
public:
    /// `projectFolder` ends in a backslash.
    BaselineFile(FileSystem &files, const QString &projectFolder);

    /// A missing file decides nothing; one that cannot be read raises 75.
    [[nodiscard]] Baseline read();
    /// In order of code and file, each once; elements that are not known here are kept. The
    /// previous version goes to _Backup\.
    void write(const Baseline &baseline);

private:
    FileSystem &m_files;
    const QString m_folder, m_path;
};
