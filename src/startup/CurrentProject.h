#pragma once

#include <QString>

/// What learns that a project became the current one: the hosted controls of the main window and
/// of the build window. Declared here so that the file modules need not know any window.
class CurrentProject
{
public:
    virtual ~CurrentProject() = default;
    /// Hands the name to the tree, books, globals and quick-navigation controls and to the build
    /// control, and the language to those that take it. Touching makes the windows, hidden.
    virtual void handOver(const QString &projectName, const QString &projectLanguage) = 0;
};
