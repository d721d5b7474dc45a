#pragma once

#include <QString>
#include <QStringList>

/// Starts other programs: by full path with a list of arguments, never through a shell.
class Processes
{
public:
    virtual ~Processes() = default;

    /// Starts `program` (a product path; ".exe" may be absent on disk) in a normal window and does
    /// not wait. Raises 53 when there is no such program, 70 when it cannot be started.
    virtual void start(const QString &program, const QStringList &arguments) = 0;

    /// Opens a text file (a product path) in the system's viewer. Raises 53.
    virtual void openText(const QString &path) = 0;

    /// Opens a page (a product path, no anchor) in the system's browser. Raises 53.
    virtual void openPage(const QString &path) = 0;
};
