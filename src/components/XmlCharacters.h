#pragma once

#include <QString>

/// The product's XML character helper, its utility component.
class XmlCharacters
{
public:
    enum class What { ProjectName, ProjectId };

    virtual ~XmlCharacters() = default;
    /// The text to store, trimmed. Text that may not become a project name or ID is refused with
    /// a message, and the result is "".
    virtual QString CheckXMLCharacters(const QString &text, What what) = 0;

    /// A link identifier as it is shown and compared: tabs, line breaks and control characters
    /// are blanks, all else is left as it is. Safe to call from several threads.
    virtual QString mstrReplaceSpecialCharecters(const QString &text) const = 0;
};
