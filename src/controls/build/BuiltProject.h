#pragma once

#include "startup/Program.h"
#include "startup/Session.h"
#include "tools/build/BuildPlan.h"
#include "tools/pack/PackProject.h"

#include <QString>

#include <array>
#include <optional>

/// The project that a build window works on, whichever is the current one, and what stands about
/// it in the lists that projects share. A value: workers take a copy.
class BuiltProject final
{
public:
    BuiltProject() = default;
    BuiltProject(Program &program, const QString &name, const QString &language);

    [[nodiscard]] bool isNone() const { return m_session.projectName.isEmpty(); }
    [[nodiscard]] const QString &name() const { return m_session.projectName; }
    [[nodiscard]] QString folder() const; ///< with backslash
    [[nodiscard]] Session session() const { return m_session; }

    /// As the list of projects has it; the one set from outside when the project is not listed
    /// there. Raises as the list.
    [[nodiscard]] QString language(FileSystem &files) const;
    /// The day on which the set was released, as stored; "" when it is not. Raises as the list.
    [[nodiscard]] QString released(FileSystem &files) const;
    void release(Program &program) const;
    /// What the next pack would hold. Raises as `readBuildInput`.
    PackPlan planPack(FileSystem &files, const PackOptions &options,
                      const Progress &progress) const;
    /// Packs it while nobody else builds it. Raises as `packProject`, and 70 while somebody does.
    PackResult pack(FileSystem &files, const PackOptions &options, const Progress &progress) const;

    using Lights = std::array<std::optional<qint64>, 4>;
    /// In the order of `BuildTool`; nothing when the status file is missing or cannot be read.
    [[nodiscard]] std::optional<Lights> lights(Program &program) const;
    void setLight(Program &program, BuildTool tool, qint32 colour) const;
    void setAllLights(Program &program, qint32 colour) const;
    /// Whether no tool must run, and none failed.
    [[nodiscard]] bool isBuilt(Program &program) const;

private:
    Session m_session;
};
