#pragma once

#include <QString>

/// The product's general tasks component.
class GeneralTasks
{
public:
    virtual ~GeneralTasks() = default;
    virtual QString QVDeveloperVersion() = 0; ///< the product version, such as "0.1.0"
};

/// The product's installation-information component.
class InstallInfo
{
public:
    virtual ~InstallInfo() = default;
    /// The client installation folder, ending in a backslash. Raises 5 when it is not set.
    virtual QString ClientPath() = 0;
};
