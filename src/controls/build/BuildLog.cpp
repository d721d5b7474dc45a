#include "controls/build/BuildLog.h"

#include "resources/Counted.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int mostShown = 3000;

QString worded(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return BuildLog::tr("Error");
    case Severity::Warning:
        return BuildLog::tr("Warning");
    case Severity::Note:
        break;
    }
    return BuildLog::tr("Note");
}

} // namespace

BuildLog::BuildLog(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setObjectName(u"txtLog"_s);
    setAccessibleName(tr("Log of the build"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
}

void BuildLog::begin()
{
    clear();
    m_counts = {};
    m_found.clear();
}

void BuildLog::say(const QString &line)
{
    appendPlainText(line);
}

void BuildLog::add(const QString &name, const ToolReport &report)
{
    say(name + u": "_s + report.summary);
    addFindings(report.findings);
}

// Links are looked at by two parts; what both found is one finding.
void BuildLog::addFindings(const QList<Finding> &findings)
{
    QStringList lines;
    qsizetype left = 0;
    for (const Finding &finding : findings) {
        const size_t known = qHashMulti(0, finding.code, finding.file, finding.line, finding.text);
        if (m_found.contains(known))
            continue;
        m_found.insert(known);
        ++m_counts[static_cast<size_t>(finding.severity)];
        if (m_found.size() > mostShown)
            ++left;
        else
            lines.append(u"    "_s + worded(finding.severity) + u": "_s
                         + logLine(finding).replace(u'\n', u' '));
    }
    if (left > 0)
        lines.append(tr("    and %1 more, see the log file.").arg(left));
    if (!lines.isEmpty())
        say(lines.join(u'\n'));
}

QString BuildLog::counts() const
{
    const auto count = [this](Severity severity) {
        return m_counts[static_cast<size_t>(severity)];
    };
    return QStringList{counted(count(Severity::Error), tr("1 error"), tr("%1 errors")),
                       counted(count(Severity::Warning), tr("1 warning"), tr("%1 warnings")),
                       counted(count(Severity::Note), tr("1 note"), tr("%1 notes"))}
        .join(u", "_s);
}
