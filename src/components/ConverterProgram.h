#pragma once

#include "components/DatabaseConverter.h"

class InstallInfo;
class Processes;
struct ProcessEnd;

/// The converter as the program "qv_dbtoxml" of the client folder, or the one beside this program:
/// whatever a damaged database does to it, this program goes on.
class ConverterProgram final : public DatabaseConverter
{
public:
    ConverterProgram(InstallInfo &installInfo, Processes &processes);

    void convert(const ConversionOrder &order, const Progress &progress) override;
    bool completed() override;
    [[nodiscard]] const ConversionReport &report() const override { return m_report; }

private:
    ProcessEnd run(const ConversionOrder &order, const Progress &progress,
                   ConversionLines::Reader &reader);
    [[nodiscard]] QString program();

    InstallInfo &m_installInfo;
    Processes &m_processes;
    ConversionReport m_report;
};
