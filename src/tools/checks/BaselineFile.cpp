#include "tools/checks/BaselineFile.h"

#include "platform/FileSystem.h"
#include "platform/Xml.h"
#include "projectfiles/Backup.h"
#include "projectfiles/FileElements.h"

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr auto fileName = "QV_QABaseline.xml"_L1;
constexpr auto rootName = "QV_QABaseline";

QString codeOf(const pugi::xml_node &element)
{
    return valueOf(element.attribute("Code"));
}

AcceptedFinding readAccepted(const pugi::xml_node &element)
{
    return {codeOf(element), textOf(element.child("Finding_File")),
            textOf(element.child("Finding_Subject"))};
}

bool comesBefore(const AcceptedFinding &a, const AcceptedFinding &b)
{
    if (const int files = a.file.compare(b.file, Qt::CaseInsensitive); files != 0)
        return files < 0;
    return std::tie(a.code, a.subject) < std::tie(b.code, b.subject);
}

/// In order, each once.
QList<AcceptedFinding> sorted(QList<AcceptedFinding> accepted)
{
    const auto isSame = [](const AcceptedFinding &a, const AcceptedFinding &b) {
        return identityOf(a) == identityOf(b);
    };
    std::sort(accepted.begin(), accepted.end(), comesBefore);
    accepted.erase(std::unique(accepted.begin(), accepted.end(), isSame), accepted.end());
    return accepted;
}

QString identity(const QString &code, const QString &file, const QString &subject)
{
    return code + u'\n' + file.toCaseFolded() + u'\n' + subject;
}

pugi::xml_node childOf(pugi::xml_node parent, const char *name)
{
    const pugi::xml_node child = parent.child(name);
    return child ? child : parent.append_child(name);
}

void writeSwitchedOff(const pugi::xml_node &list, QStringList codes)
{
    codes.sort();
    codes.removeDuplicates();
    RewrittenList kinds(list, "Kind", codeOf);
    for (const QString &code : std::as_const(codes))
        setAttribute(kinds.place(code), "Code", code);
    kinds.removeRest();
}

void writeAccepted(const pugi::xml_node &list, const QList<AcceptedFinding> &accepted)
{
    RewrittenList findings(list, "Finding", [](const pugi::xml_node &element) {
        return identityOf(readAccepted(element));
    });
    for (const AcceptedFinding &one : accepted) {
        const pugi::xml_node element = findings.place(identityOf(one));
        setAttribute(element, "Code", one.code);
        setChild(element, "Finding_File", one.file);
        setChild(element, "Finding_Subject", one.subject);
    }
    findings.removeRest();
}

} // namespace

QString identityOf(const Finding &finding)
{
    return identity(finding.code, finding.file, finding.subject);
}

QString identityOf(const AcceptedFinding &accepted)
{
    return identity(accepted.code, accepted.file, accepted.subject);
}

QSet<QString> identitiesOf(const Baseline &baseline)
{
    QSet<QString> identities;
    for (const AcceptedFinding &accepted : baseline.accepted)
        identities.insert(identityOf(accepted));
    return identities;
}

QString baselinePath(const QString &projectFolder)
{
    return projectFolder + fileName;
}

BaselineFile::BaselineFile(FileSystem &files, const QString &projectFolder)
    : m_files(files)
    , m_folder(projectFolder)
    , m_path(baselinePath(projectFolder))
{
}

Baseline BaselineFile::read()
{
    Baseline baseline;
    if (!m_files.exists(m_path))
        return baseline;
    const pugi::xml_document document = loadXml(m_files, m_path, rootName);
    const pugi::xml_node root = document.document_element();
    for (const pugi::xml_node &kind : root.child("Switched_Off").children("Kind"))
        baseline.switchedOff.append(codeOf(kind));
    for (const pugi::xml_node &finding : root.child("Accepted").children("Finding"))
        baseline.accepted.append(readAccepted(finding));
    return baseline;
}

void BaselineFile::write(const Baseline &baseline)
{
    pugi::xml_document document;
    if (m_files.exists(m_path))
        document = loadXml(m_files, m_path, rootName);
    else
        document.append_child(rootName);
    const pugi::xml_node root = document.document_element();
    writeSwitchedOff(childOf(root, "Switched_Off"), baseline.switchedOff);
    writeAccepted(childOf(root, "Accepted"), sorted(baseline.accepted));
    backUp(m_files, m_folder, fileName);
    saveXml(m_files, m_path, document);
}
