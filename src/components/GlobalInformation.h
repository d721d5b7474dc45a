#pragma once

#include <QString>

/// The product's global-information component.
class GlobalInformation
{
public:
    virtual ~GlobalInformation() = default;
    /// Makes Book_Global.xml in `folder` ("...\_Global Information\") for a project.
    virtual void createGlobalBook(const QString &folder, const QString &projectName) = 0;
};
