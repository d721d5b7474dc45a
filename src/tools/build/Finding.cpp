#include "tools/build/Finding.h"

using namespace Qt::StringLiterals;

QString logLine(const Finding &finding)
{
    const QString place = finding.line > 0
                              ? finding.file + u'(' + QString::number(finding.line) + u')'
                              : finding.file;
    const QString what = finding.code + u' ' + finding.text;
    return place.isEmpty() ? what : place + u": "_s + what;
}

QByteArray logFile(const QString &title, const ToolReport &report)
{
    QString text = title + u"\r\n"_s + report.summary + u"\r\n\r\n"_s;
    for (const Finding &finding : report.findings) {
        QString line = logLine(finding);
        line.replace(u'\n', u' ').remove(u'\r'); // one finding is one line, whatever a page holds
        text += line + u"\r\n"_s;
    }
    return text.toUtf8();
}
