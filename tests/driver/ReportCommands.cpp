#include "driver/Commands.h"
#include "reports/LinkReport.h"

using namespace Qt::StringLiterals;

namespace {

/// One line per entry: status, identifier, address.
void print(const LinkEntries &entries)
{
    const QByteArray docs = entries.docs().toUtf8();
    for (qsizetype index = 0; index < entries.count(); ++index) {
        const QByteArray line = (entries.isGood(index) ? "OK\t"_ba : "BAD\t"_ba)
                                + entries.identifierView(index).toUtf8() + '\t' + docs
                                + entries.storedPath(index).toUtf8() + '\n';
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    }
}

LinkReport report(Console &console, const QStringList &arguments)
{
    console.parts.registryAccess.SetQVServer(console.session.serverPath);
    if (arguments.value(0) == "--threads"_L1)
        return {console.program, arguments.value(1).toInt()};
    return LinkReport(console.program);
}

int reportTargets(Console &console, const QStringList &arguments)
{
    print(report(console, arguments).GetIBD_Details());
    return 0;
}

int reportReferences(Console &console, const QStringList &arguments)
{
    print(report(console, arguments).GetIBS_Details());
    return 0;
}

int findTarget(Console &console, const QStringList &arguments)
{
    const bool good = report(console, {}).CheckLinkIDExist(arguments.at(0));
    printLine({good ? u"OK"_s : u"BAD"_s});
    return 0;
}

} // namespace

QList<Command> reportCommands()
{
    return {
        {u"report-ibd"_s, 0, u"[--threads N]"_s, reportTargets},
        {u"report-ibs"_s, 0, u"[--threads N]"_s, reportReferences},
        {u"find-link"_s, 1, u"IDENTIFIER"_s, findTarget},
    };
}
