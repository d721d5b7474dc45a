// The file of the report: written lean, for it may hold a hundred thousand findings.

#include "platform/FileSystem.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "platform/XmlTokens.h"
#include "tools/build/DerivedXml.h"
#include "tools/checks/FindingKinds.h"
#include "tools/checks/QaReport.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto fileName = "QV_QAReport.xml"_L1;
constexpr auto rootName = "QV_QAReport"_L1;
constexpr std::array severities{Severity::Note, Severity::Warning, Severity::Error};

void writeElement(DerivedXml &out, std::string_view name, QStringView text,
                  std::string_view indent = "\t\t")
{
    out.markup(indent);
    out.markup("<");
    out.markup(name);
    out.markup(">");
    out.text(text);
    out.markup("</");
    out.markup(name);
    out.markup(">\r\n");
}

void writeCount(DerivedXml &out, std::string_view name, int value)
{
    writeElement(out, name, QString::number(value));
}

std::string_view ascii(QLatin1StringView text)
{
    return {text.data(), static_cast<size_t>(text.size())};
}

void writeFinding(DerivedXml &out, const QaFinding &one)
{
    out.markup("\t\t<Finding Code=\"");
    out.text(one.finding.code);
    out.markup("\" Severity=\"");
    out.markup(ascii(tagOf(one.finding.severity)));
    out.markup("\" State=\"");
    out.markup(one.isKnown ? "Known" : "New");
    out.markup("\" Line=\"");
    out.number(static_cast<quint64>(one.finding.line));
    out.markup("\">\r\n");
    writeElement(out, "Finding_File", one.finding.file, "\t\t\t");
    writeElement(out, "Finding_Subject", one.finding.subject, "\t\t\t");
    writeElement(out, "Finding_Text", one.finding.text, "\t\t\t");
    out.markup("\t\t</Finding>\r\n");
}

/// Takes a report from the pieces of its file.
class ReportReader final
{
public:
    explicit ReportReader(XmlTokens &tokens)
        : m_tokens(tokens)
    {
    }

    QaReport read()
    {
        using Kind = XmlTokens::Kind;
        for (Kind kind = m_tokens.next(); kind != Kind::End; kind = m_tokens.next()) {
            if (kind == Kind::StartElement)
                start();
            else if (kind == Kind::EndElement)
                end();
            else
                m_text += m_tokens.text();
        }
        return m_report;
    }

private:
    void start()
    {
        m_text.clear();
        if (m_tokens.depth() == 1 && m_tokens.name() != rootName)
            throw QvError(PathFileAccess, {}, u"it is no quality report"_s);
        if (m_tokens.name() != "Finding"_L1)
            return;
        m_one = {};
        m_one.finding.code = shared(m_code, m_tokens.attribute(u"Code"_s));
        m_one.finding.severity = severityOf(m_tokens.attribute(u"Severity"_s));
        m_one.finding.line = m_tokens.attribute(u"Line"_s).toInt();
        m_one.isKnown = m_tokens.attribute(u"State"_s) == "Known"_L1;
    }

    void end()
    {
        const QStringView name = m_tokens.name();
        if (name == "Finding"_L1)
            m_report.findings.append(m_one);
        else if (name == "Finding_File"_L1)
            m_one.finding.file = shared(m_file, m_text);
        else if (name == "Finding_Subject"_L1)
            m_one.finding.subject = m_text;
        else if (name == "Finding_Text"_L1)
            m_one.finding.text = m_text;
        else if (name == "Report_Level"_L1)
            m_report.level = m_text == "Links"_L1 ? CheckLevel::Links : CheckLevel::Everything;
        else if (name == "Report_Fixed"_L1)
            m_report.fixedCount = m_text.toInt();
    }

    /// Most findings have the code or the file of the one before: they share its text.
    static QString shared(QString &last, const QString &text)
    {
        if (last != text)
            last = text;
        return last;
    }

    static Severity severityOf(const QString &tag)
    {
        for (const Severity severity : severities) {
            if (tag == tagOf(severity))
                return severity;
        }
        return Severity::Warning;
    }

    XmlTokens &m_tokens;
    QaReport m_report;
    QaFinding m_one;
    QString m_text, m_code, m_file;
};

} // namespace

QString qaReportPath(const QString &projectFolder)
{
    return projectFolder + fileName;
}

QByteArray qaReportFile(const QString &project, const QaReport &report)
{
    DerivedXml out;
    out.markup("<QV_QAReport>\r\n\t<Report>\r\n");
    writeElement(out, "Report_Project", project);
    writeElement(out, "Report_Level", report.level == CheckLevel::Links ? u"Links" : u"Everything");
    writeCount(out, "Report_New", report.newCount());
    writeCount(out, "Report_Known", report.knownCount());
    writeCount(out, "Report_Fixed", report.fixedCount);
    out.markup("\t</Report>\r\n\t<Findings>\r\n");
    for (const QaFinding &one : report.findings)
        writeFinding(out, one);
    out.markup("\t</Findings>\r\n</QV_QAReport>\r\n");
    return out.bytes();
}

std::optional<QaReport> readWrittenQaReport(FileSystem &files, const QString &projectFolder)
{
    const QString path = qaReportPath(projectFolder);
    if (!files.exists(path))
        return std::nullopt;
    QaReport report;
    const QString text = readXmlText(files, path);
    readXmlTokens(text, path,
                  [&report](XmlTokens &tokens) { report = ReportReader(tokens).read(); });
    return report;
}

std::optional<QaReport> readQaReport(FileSystem &files, const QString &projectFolder)
{
    std::optional<QaReport> report = readWrittenQaReport(files, projectFolder);
    if (report)
        judge(*report, BaselineFile(files, projectFolder).read());
    return report;
}
