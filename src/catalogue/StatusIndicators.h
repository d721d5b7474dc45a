#pragma once

#include "platform/FileSystem.h"
#include "startup/CurrentProject.h"
#include "startup/Session.h"

#include <QString>

#include <functional>
#include <optional>

#include <pugixml.hpp>

inline constexpr qint32 neutralColour = 16777215;

/// The four lights as stored; a value that is missing or no number reads as nothing.
struct StatusLights
{
    std::optional<qint64> docToDoc, contextSettings, quickNav, searchIndex;
};

/// The current project's "QV_StatusIndicators.xml".
class StatusIndicators
{
public:
    StatusIndicators(Session &session, FileSystem &files, CurrentProject &currentProject);

    /// Writes a new file with four neutral indicators.
    bool CreateStatusIndicatorXmlFile(const QString &path);
    /// Sets all four indicators; a missing or unreadable file is left alone.
    void UpdateStatusXml(qint32 colour);
    /// Sets one indicator ("QuickNav"); what else the file holds stays. The file is made usable
    /// first, as below. Raises as UpdateStatusXml.
    void setLight(QLatin1StringView indicator, qint32 colour);
    /// Makes the file when it is missing (an unreadable one is first moved to _Backup\, a missing
    /// indicator is added), then hands project and language to the hosted controls.
    void AddProjectName();

    /// The indicators as stored. Nothing when the file is missing, empty or cannot be read.
    std::optional<StatusLights> lights();

private:
    void change(const std::function<void(pugi::xml_node root)> &edit);
    void makeUsable();
    void addMissing(const pugi::xml_document &document);
    QString path() const;

    Session &m_session;
    FileSystem &m_files;
    CurrentProject &m_currentProject;
};
