#include "components/ConverterProgram.h"

#include "components/ProductInfo.h"
#include "platform/Processes.h"
#include "platform/QvError.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto programName = "qv_dbtoxml"_L1;
// It tells each row it reads and each file it writes, but flushing much to a slow disk is one step.
constexpr auto longestSilence = std::chrono::minutes(3);

QStringList argumentsFor(const ConversionOrder &order)
{
    // A value stands in one word with its name, so that none is taken for another option.
    QStringList arguments{u"--database="_s + order.database,   u"--mode="_s + order.mode,
                          u"--target="_s + order.targetFolder, u"--name="_s + order.projectName,
                          u"--id="_s + order.projectId,        u"--language="_s + order.language};
    if (order.acceptPartly)
        arguments.append(u"--accept-partly"_s);
    return arguments;
}

[[noreturn]] void raiseMissing()
{
    throw QvError(
        ComponentMissing, programName,
        u"The database-to-XML converter (qv_dbtoxml) is not installed, so legacy book sets "
        "cannot be migrated on this machine. Nothing was created. Add the project as new "
        "or as a copy instead, or install the converter"_s);
}

/// What is to be said of a converter that did not come to its end.
QString reasonOf(const ProcessEnd &end, const QString &database)
{
    const QString words = end.lastWords.isEmpty() ? QString() : u" ("_s + end.lastWords + u')';
    switch (end.kind) {
    case ProcessEnd::Kind::Crashed:
        return u"%1 cannot be migrated: the converter broke off while it read the file, which is "
               "probably damaged%2. Nothing was created. Repair the database with the program it "
               "was made with, or take an older copy of it."_s.arg(database, words);
    case ProcessEnd::Kind::Silent:
        return u"%1 cannot be migrated: the converter did not answer any more while it read the "
               "file, which is probably damaged. Nothing was created. Repair the database with "
               "the program it was made with, or take an older copy of it."_s.arg(database);
    default:
        return u"%1 cannot be migrated: the converter ended with status %2 and said nothing "
               "else%3. Nothing was created. Install this program and the converter anew."_s.arg(
                   database, QString::number(end.status), words);
    }
}

} // namespace

ConverterProgram::ConverterProgram(InstallInfo &installInfo, Processes &processes)
    : m_installInfo(installInfo)
    , m_processes(processes)
{
}

void ConverterProgram::convert(const ConversionOrder &order, const Progress &progress)
{
    m_report = {};
    ConversionLines::Reader reader([&](int done, int total, const QString &what) {
        if (progress.report)
            progress.report(done, total, what);
    });
    const ProcessEnd end = run(order, progress, reader);
    const auto told = reader.report();
    // What is done is done, even when Stop came, or the program broke, after its last line.
    const bool counts =
        told && (end.kind == ProcessEnd::Kind::Exited || told->end == ConversionEnd::Done);
    if (!counts && end.kind == ProcessEnd::Kind::Stopped)
        throw Unwinding{Unwinding::Reason::Stopped};
    if (counts) {
        m_report = *told;
        return;
    }
    m_report.end = ConversionEnd::BrokenOff;
    m_report.reason = reasonOf(end, order.database);
}

bool ConverterProgram::completed()
{
    return m_report.end == ConversionEnd::Done;
}

ProcessEnd ConverterProgram::run(const ConversionOrder &order, const Progress &progress,
                                 ConversionLines::Reader &reader)
{
    const auto onError = [](const QvError &error) -> void {
        if (error.number() == FileNotFound)
            raiseMissing();
        throw error;
    };
    return trap(onError, [&] {
        return m_processes.run(program(), argumentsFor(order), {.silence = longestSilence},
                               progress.stop, [&](const QByteArray &line) { reader.take(line); });
    });
}

QString ConverterProgram::program()
{
    QString client;
    trap([](const QvError &) {}, [&] { client = m_installInfo.ClientPath(); });
    return client.isEmpty() ? QString(programName) : client + u"Bin\\"_s + programName + u".exe"_s;
}
