#include "catalogue/StatusIndicators.h"

#include "platform/Paths.h"
#include "platform/Xml.h"
#include "startup/Errors.h"
#include "startup/FileHelpers.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "QV_StatusIndicator";
constexpr std::array indicators{"DoctoDoc", "ContextSettings", "QuickNav", "SearchIndex"};

constexpr auto heading = "<!-- Talmeric International, Industrial Control\r\n"
                         "    Orvantis VRX R100 - Tools\r\n"
                         "    Quovane Developer Status Indicators Data File \r\n"
                         "    \r\n"
                         "    Version 0.1 \r\n"
                         "    Information 'quovane@talmeric.invalid' -->\r\n"_L1;

/// Nothing when the file is missing or cannot be read.
std::optional<pugi::xml_document> loadIfUsable(FileSystem &files, const QString &path)
{
    try {
        return loadXml(files, path, rootName);
    } catch (const QvError &) {
        return std::nullopt;
    }
}

/// Sets one indicator, which is added when it is missing.
void setIndicator(pugi::xml_node root, const char *indicator, const QString &value)
{
    if (const pugi::xml_node node = root.child(indicator))
        setText(node, value);
    else
        appendText(root, indicator, value);
}

std::optional<qint64> numberIn(const pugi::xml_node &indicator)
{
    bool isNumber = false;
    const qint64 number = textOf(indicator).trimmed().toLongLong(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

/// Moves the file to _Backup\ beside it, under a name that is not taken.
void moveAside(FileSystem &files, const QString &path)
{
    const QString folder = withBackslash(parentFolder(path) + ProjectFile::backupFolder);
    if (!files.folderExists(folder))
        files.makeFolder(folder);
    const QString stem = folder + lastComponent(path) + ".unreadable"_L1;
    int number = 1;
    while (files.exists(stem + QString::number(number)))
        ++number;
    files.move(path, stem + QString::number(number));
}

} // namespace

StatusIndicators::StatusIndicators(Session &session, FileSystem &files,
                                   CurrentProject &currentProject)
    : m_session(session)
    , m_files(files)
    , m_currentProject(currentProject)
{
}

bool StatusIndicators::CreateStatusIndicatorXmlFile(const QString &path)
{
    return trap(reraise(m_session, u"QV_Developer::CreateStatusIndicatorXmlFile"_s), [&] {
        XmlWriter writer;
        XmlAttributes attributes;
        writer.startElement(QString::fromLatin1(rootName));
        for (const char *indicator : indicators)
            GenerateXMLTag(m_session, writer, attributes, QString::fromLatin1(indicator),
                           QString::number(neutralColour));
        writer.endElement();
        m_files.replaceFile(path,
                            utf16Bytes(xmlDeclaration + u"\r\n"_s + heading + writer.output()));
        return true;
    });
}

void StatusIndicators::UpdateStatusXml(qint32 colour)
{
    change([&](pugi::xml_node root) {
        for (const char *indicator : indicators)
            setIndicator(root, indicator, QString::number(colour));
    });
}

void StatusIndicators::setLight(QLatin1StringView indicator, qint32 colour)
{
    makeUsable();
    change([&](pugi::xml_node root) {
        setIndicator(root, indicator.data(), QString::number(colour));
    });
}

void StatusIndicators::change(const std::function<void(pugi::xml_node root)> &edit)
{
    const auto raiseAgain = [&](const QvError &error) {
        m_session.errorText = u"Error(%1): "_s.arg(error.number()) + error.description();
        throw QvError(error.number(), u"QV_Developer::UpdateStatusXml"_s, m_session.errorText);
    };
    trap(raiseAgain, [&] {
        const auto document = loadIfUsable(m_files, path());
        if (!document)
            return;
        edit(document->document_element());
        saveXml(m_files, path(), *document);
    });
}

void StatusIndicators::AddProjectName()
{
    trap(reraise(m_session, u"QV_Developer::AddProjectName"_s), [&] {
        makeUsable();
        m_currentProject.handOver(m_session.projectName, m_session.projectLanguage);
    });
}

std::optional<StatusLights> StatusIndicators::lights()
{
    const auto document = loadIfUsable(m_files, path());
    if (!document)
        return std::nullopt;

    const pugi::xml_node root = document->document_element();
    if (!root.first_child())
        return std::nullopt;
    return StatusLights{.docToDoc = numberIn(root.child("DoctoDoc")),
                        .contextSettings = numberIn(root.child("ContextSettings")),
                        .quickNav = numberIn(root.child("QuickNav")),
                        .searchIndex = numberIn(root.child("SearchIndex"))};
}

void StatusIndicators::makeUsable()
{
    if (const auto document = loadIfUsable(m_files, path())) {
        addMissing(*document);
        return;
    }
    if (m_files.exists(path()))
        moveAside(m_files, path());
    CreateStatusIndicatorXmlFile(path());
}

void StatusIndicators::addMissing(const pugi::xml_document &document)
{
    const pugi::xml_node root = document.document_element();
    bool changed = false;
    for (const char *indicator : indicators) {
        if (root.child(indicator))
            continue;
        setIndicator(root, indicator, QString::number(neutralColour));
        changed = true;
    }
    if (changed)
        saveXml(m_files, path(), document);
}

QString StatusIndicators::path() const
{
    return projectFolder(m_session.serverPath, m_session.projectName) + ProjectFile::status;
}
