#pragma once

#include "platform/Processes.h"

class FileSystem;

/// Starts programs by their full native path, without a shell; "X.exe" is "X" where only that is.
class PortableProcesses final : public Processes
{
public:
    explicit PortableProcesses(FileSystem &files);

    void start(const QString &program, const QStringList &arguments) override;
    ProcessEnd run(const QString &program, const QStringList &arguments,
                   const ProcessLimits &limits, const std::stop_token &stop,
                   const std::function<void(const QByteArray &line)> &line) override;
    void openText(const QString &path) override;
    void openPage(const QString &path) override;

private:
    void openFile(const QString &path);
    [[nodiscard]] QString nativeProgram(const QString &program) const;

    FileSystem &m_files;
};
