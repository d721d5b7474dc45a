#pragma once

#include "platform/Xml.h"
#include "startup/Program.h"

#include <QString>

/// Shared helpers for whole files and folders. Errors are raised again under the procedure's tag.
class FileHelpers
{
public:
    FileHelpers(Session &session, FileSystem &files);

    /// Makes every folder of `path` that is not there; the last piece is a folder too.
    bool mbCreateFilePath(const QString &path);
    /// Puts `text` as the whole content of the file: UTF-16 with mark, no line end added.
    void EnterToFile(const QString &fileName, const QString &text);
    /// The whole text of a file, decoded by its mark, its declared charset or the project's
    /// language; "" when it cannot be opened.
    QString ReadFileText(const QString &fileName);

private:
    Session &m_session;
    FileSystem &m_files;
};

/// Probes write access to "<serverPath>Docs\"; tells the author and ends the program on failure.
bool checkforwritability(Program &program, const QString &serverPath);

/// Writes one element with `value` as its text (none when it is empty) and clears `attributes`.
void GenerateXMLTag(Session &session, XmlWriter &writer, XmlAttributes &attributes,
                    const QString &tagName, const QString &value);
