#pragma once

#include <QList>
#include <QString>

enum class Severity { Note, Warning, Error };

/// One thing that a tool found, as its log, the report and the tree's badges show it.
struct Finding
{
    QString code; ///< "LINK01"; stable, so that it can be switched off or accepted
    Severity severity = Severity::Warning;
    QString file; ///< relative to the project folder, with backslashes; "": the project as a whole
    int line = 0; ///< 0: the file as a whole
    QString text; ///< what is wrong, with what, and what to do
    /// What makes it the same finding in another run, whatever line it stands in then: the target
    /// of a dead link, the name of a double id.
    QString subject = {};
    friend bool operator==(const Finding &, const Finding &) = default;
};

/// "Book_A\start.htm(12): LINK01 There is no file x.htm." as a log shows it; without the line when
/// it is 0.
QString logLine(const Finding &finding);

/// How a tool's run ended.
struct ToolReport
{
    enum class Outcome { Good, Warnings, Failed } outcome = Outcome::Good;
    QString summary; ///< one sentence with the counts: "4,812 links, 3 of them dead."
    QList<Finding> findings = {};
};

/// The log file's bytes: UTF-8 with CRLF; `title`, the summary, then one line per finding.
QByteArray logFile(const QString &title, const ToolReport &report);
