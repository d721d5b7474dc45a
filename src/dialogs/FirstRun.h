#pragma once

#include "startup/Program.h"

#include <QString>

/// Finds the server installation when the registry names none: the author chooses its folder,
/// creates a sample installation, or quits.
class FirstRun final
{
public:
    explicit FirstRun(Program &program);

    /// True when no server path is stored.
    [[nodiscard]] bool isNeeded();
    /// Asks until a server path is stored. False when the author quits.
    bool findServer();

private:
    bool chooseServer();
    bool createSample();
    bool refuses(const QString &folder);
    void use(const QString &serverPath);

    Program &m_program;
};
