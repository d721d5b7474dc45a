#pragma once

#include "platform/Processes.h"

class FileSystem;

/// The programs of Windows.
class WindowsProcesses final : public Processes
{
public:
    explicit WindowsProcesses(FileSystem &files);

    void start(const QString &program, const QStringList &arguments) override;
    ProcessEnd run(const QString &program, const QStringList &arguments,
                   const ProcessLimits &limits, const std::stop_token &stop,
                   const std::function<void(const QByteArray &line)> &line) override;
    void openText(const QString &path) override; ///< in the notepad
    /// Raises 70 also for what is no page, picture, sound or text: the shell would run it.
    void openPage(const QString &path) override;

private:
    [[nodiscard]] QString nativeProgram(const QString &program) const;
    [[nodiscard]] QString nativeFile(const QString &path) const;

    FileSystem &m_files;
};
