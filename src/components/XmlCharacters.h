#pragma once

#include <QString>

/// The product's XML character helper.
class XmlCharacters
{
public:
    enum class What { ProjectName, ProjectId };

    virtual ~XmlCharacters() = default;
    /// The text to store, trimmed. Text that may not become a project name or ID is refused with
    /// a message, and the result is "".
    virtual QString CheckXMLCharacters(const QString &text, What what) = 0;
};
