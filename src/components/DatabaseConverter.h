#pragma once

#include <QString>

/// The product's database-to-XML converter for legacy book sets.
class DatabaseConverter
{
public:
    virtual ~DatabaseConverter() = default;
    /// Raises 429, naming what is missing, when the converter is not installed.
    virtual void convert(const QString &mode, const QString &database, const QString &targetFolder,
                         const QString &projectName, const QString &projectId) = 0;
    /// True when the conversion came to its end and wrote a project.
    virtual bool completed() = 0;
};
